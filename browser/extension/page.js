// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// Lives beside a page's own scripts, out of their sight and beyond the page's content policy. It
// does three things and no other: write a number into the first field of a name, tell whether the
// first field of a name is empty, and tell whether an element is checked.
'use strict';

(() => {
    const name = String.raw`([^'\\\r\n]+)`;
    const field = String.raw`document\.getElementsByName\('${name}'\)\[0\]\.value`;
    const assignmentShape = new RegExp(`^${field}=(.+)$`);
    const valueShape = new RegExp(`^${field}$`);
    const checkedShape = new RegExp(String.raw`^document\.getElementById\('${name}'\)\.checked$`);
    // A number as a script spells it. With a leading zero a script means something else.
    const numberShape = /^-?(?:(?:0|[1-9]\d*)(?:\.\d*)?|\.\d+)(?:[eE][+-]?\d+)?$/;
    // What a field holds stays in the page: whether it holds anything is all that a weight needs to
    // know, and whoever plays the program could ask for a password.
    const someValue = 'filled';
    // Not by a name: the page's elements are properties of the global object by theirs.
    const connectKey = Symbol.for('org.postalscale.connect');

    function fieldNamed(fieldName) {
        const element = document.getElementsByName(fieldName)[0];
        return typeof element?.value === 'string' ? element : null;
    }

    function assign(fieldName, literal, inputEvents) {
        const element = fieldNamed(fieldName);
        if (!element || !numberShape.test(literal))
            return null;
        element.value = Number(literal);
        if (inputEvents)
            element.dispatchEvent(new Event('input', {bubbles: true}));
        return String(Number(literal));
    }

    function read(fieldName) {
        const element = fieldNamed(fieldName);
        if (!element)
            return null;
        return element.value === '' ? '' : someValue;
    }

    function isChecked(id) {
        const checked = document.getElementById(id)?.checked;
        return typeof checked === 'boolean' ? String(Number(checked)) : null;
    }

    /** The value as text; null where there is none, and for every text of another shape. */
    function run(text, inputEvents) {
        try {
            const assignment = assignmentShape.exec(text);
            if (assignment)
                return assign(assignment[1], assignment[2], inputEvents);
            const value = valueShape.exec(text);
            if (value)
                return read(value[1]);
            const checked = checkedShape.exec(text);
            return checked ? isChecked(checked[1]) : null;
        } catch {
            return null; // such as a file field, which no script may fill
        }
    }

    let port = null;
    let left = false;

    function connect() {
        if (port || left)
            return;
        // The one name that is the browser's own in both browsers; in Chromium "browser" may be an
        // element.
        const opened = globalThis.chrome.runtime.connect({name: 'page'});
        port = opened;
        opened.onMessage.addListener(({id, texts, inputEvents}) => {
            if (port === opened)
                opened.postMessage({id, results: texts.map((text) => run(text, inputEvents))});
        });
        opened.onDisconnect.addListener(() => {
            if (port === opened)
                port = null;
        });
    }

    // The page may send such events as well, but has no say in this.
    function leave(event) {
        if (!event.isTrusted)
            return;
        left = true;
        port?.disconnect();
        port = null;
    }

    function enter(event) {
        left = false;
        // A kept page that this script came into after it was left has a port that is dead, and
        // does not know it yet.
        if (event.persisted) {
            port?.disconnect();
            port = null;
        }
        connect();
    }

    // A second copy of this file in the same document only revives the first.
    if (globalThis[connectKey]) {
        globalThis[connectKey]();
        return;
    }
    globalThis[connectKey] = connect;
    // A page that is left may be kept, and shown again as it was.
    addEventListener('pagehide', leave, {capture: true});
    addEventListener('pageshow', enter, {capture: true});
    connect();
})();
