// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// Lives beside a page's own scripts, out of their sight and beyond the page's content policy. It
// walks a plan of which each step does one of three things and no other: write a number into the
// first field of a name, ask whether the first field of a name is empty, and ask whether an element
// is checked. Then it tells the page what was typed, and looks whether it stands there.
'use strict';

(() => {
    const name = String.raw`([^'\\\r\n]+)`;
    const field = String.raw`document\.getElementsByName\('${name}'\)\[0\]\.value`;
    const assignmentShape = new RegExp(`^${field}=(.+)$`);
    const valueShape = new RegExp(`^${field}$`);
    const checkedShape = new RegExp(String.raw`^document\.getElementById\('${name}'\)\.checked$`);
    // A number as a script spells it. With a leading zero a script means something else.
    const numberShape = /^-?(?:(?:0|[1-9]\d*)(?:\.\d*)?|\.\d+)(?:[eE][+-]?\d+)?$/;
    // Not by a name: the page's elements are properties of the global object by theirs.
    const connectKey = Symbol.for('org.postalscale.connect');
    const {holds} = globalThis[Symbol.for('org.postalscale.fields')];

    const badgeTime = 1500; // ms
    const badgeTag = 'postal-scale-badge';
    const writtenColor = '#1a7f37';
    const changedColor = '#b35900';

    // The three shapes

    function fieldNamed(fieldName) {
        const element = document.getElementsByName(fieldName)[0];
        return typeof element?.value === 'string' ? element : null;
    }

    function assign(fieldName, literal, written) {
        const element = fieldNamed(fieldName);
        if (!element || !numberShape.test(literal))
            return;
        const number = Number(literal);
        const before = written.get(element)?.before ?? element.value;
        element.value = number;
        written.set(element, {name: fieldName, number, before});
    }

    const isEmpty = (fieldName) => fieldNamed(fieldName)?.value === '';

    const isChecked = (id) => document.getElementById(id)?.checked === true;

    /** A text of any other shape does nothing, and is no question. */
    function run(text, answers, written) {
        const assignment = assignmentShape.exec(text);
        if (assignment)
            return assign(assignment[1], assignment[2], written);
        const value = valueShape.exec(text);
        const checked = value ? null : checkedShape.exec(text);
        if (!value && !checked)
            return;
        const place = answers.push(false) - 1;
        answers[place] = value ? isEmpty(value[1]) : isChecked(checked[1]);
    }

    /** Each step in its turn: what one writes, another may ask for. Returns which of those with a
     *  note were due, counted from 0. */
    function walk(steps, written) {
        const answers = [];
        const due = [];
        let notes = 0;
        for (const step of steps) {
            try {
                const {text, if: ifAnswers = [], unless = [], note = false} =
                    typeof step === 'string' ? {text: step} : step;
                const number = note === true ? notes++ : null;
                if (!ifAnswers.every((each) => answers[each] === true) ||
                    !unless.every((each) => answers[each] === false))
                    continue;
                if (number !== null)
                    due.push(number);
                run(text, answers, written);
            } catch {
                // such as a file field, which no script may fill
            }
        }
        return due;
    }

    // What the page knows of the weight. A page that only shows its fields needs no word; one that
    // keeps a record of its own believes an event alone, and may go by each of them to ask a server
    // for a price, or post itself back.

    /** By field name: the number that was told last, what the page showed for it then, where the
     *  field is, and what the latest plan left in it. */
    let told = new Map();
    /** Deeds of the person in the page: whatever the page shows after one may be another parcel's. */
    let deeds = 0;

    function isNews({name: fieldName, number, before}, element) {
        const last = told.get(fieldName);
        if (!last || last.number !== number)
            return true;
        // A page that paints over its field, makes it anew or is loaded anew, all by itself, would
        // do so again.
        if (last.deeds === deeds)
            return false;
        if (before === '')
            return last.element !== element || last.held !== '';
        return before !== last.held && before !== last.shown;
    }

    const toldSinceDeed = () => [...told].filter(([, last]) => last.deeds === deeds);

    /** Returns the names of the fields with news.
     *  @param announce gets what the page is told, before it hears of it: it may be gone right then */
    function tell(written, announce) {
        const news = [...written].filter(([element, field]) => isNews(field, element));
        for (const [element, {name: fieldName, number}] of news)
            told.set(fieldName, {number, element, deeds, shown: null, held: null, changed: false});
        if (news.length > 0)
            announce(toldSinceDeed().map(([fieldName, {number}]) => [fieldName, number]));
        const heard = new Set();
        for (const [element, {name: fieldName, number}] of news) {
            // What is told of one field may make the others anew. An empty one has the next plan's.
            if (!dispatch('input', element, fieldName, number)) {
                told.delete(fieldName);
                continue;
            }
            heard.add(fieldName);
            dispatch('change', element, fieldName, number);
        }
        return heard;
    }

    /** To the field that stands there by now, if it is the one that was written or holds the number
     *  as well. */
    function dispatch(type, element, fieldName, number) {
        const standing = fieldNamed(fieldName);
        if (!standing || (standing !== element && !holds(standing, number)))
            return false;
        standing.dispatchEvent(new Event(type, {bubbles: true}));
        return true;
    }

    /** What has become of the fields, by name: the page may have made them anew. One that was told
     *  of a number and made another one of it goes on to mean that one, although the number is
     *  written again. */
    function lookBack(written, news, quiet) {
        const changed = new Set();
        for (const [element, {name: fieldName, number}] of written) {
            const last = told.get(fieldName);
            // A page that was busy may have had the next program's plan since.
            const isOfThis = !quiet && last?.number === number;
            const standing = fieldNamed(fieldName);
            const isOther = !standing || !holds(standing, number);
            // A field that was made anew, and is empty, means no other number.
            const isAnew = standing !== element && !standing?.value;
            if (isOfThis) {
                last.element = standing;
                last.held = standing?.value;
                if (news.has(fieldName))
                    last.shown = last.held;
                last.changed ||= isOther && !isAnew;
            }
            if (isOther || (isOfThis && last.changed))
                changed.add(fieldName);
        }
        return changed;
    }

    // What the person sees of it. The page's own elements stay as they are.

    let badge = null;
    let badgeEnd = 0;
    let outlines = [];

    function removeBadge() {
        clearTimeout(badgeEnd);
        badge?.remove();
        badge = null;
        outlines = [];
    }

    /** What they are drawn around is not there any more. */
    function removeOutlines() {
        for (const each of outlines)
            each.remove();
        outlines = [];
    }

    function boxAt(styles) {
        const box = document.createElement('div');
        Object.assign(box.style, {position: 'fixed', boxSizing: 'border-box', ...styles});
        return box;
    }

    function isSeen(element) {
        const {width, height} = element.getBoundingClientRect();
        return width > 0 && height > 0 &&
               element.checkVisibility({checkOpacity: true, checkVisibilityCSS: true});
    }

    function outline(element, color) {
        const {left, top, width, height} = element.getBoundingClientRect();
        return boxAt({left: `${left - 3}px`, top: `${top - 3}px`, width: `${width + 6}px`,
                      height: `${height + 6}px`, border: `2px solid ${color}`,
                      borderRadius: '4px'});
    }

    function words(count, others) {
        const fields = `${count} ${count === 1 ? 'field' : 'fields'}`;
        if (others === 0)
            return `Postal Scale: ${fields}`;
        return `Postal Scale: ${fields}, ${others} ${others === 1 ? 'shows' : 'show'} another number`;
    }

    function showBadge(count, news, changed) {
        removeBadge();
        badge = document.createElement(badgeTag);
        badge.setAttribute('aria-hidden', 'true');
        Object.assign(badge.style, {all: 'initial', position: 'fixed', inset: '0',
                                    pointerEvents: 'none', zIndex: '2147483647'});
        const label = boxAt({right: '12px', bottom: '12px', padding: '6px 12px', color: 'white',
                             background: changed.size > 0 ? changedColor : writtenColor,
                             borderRadius: '6px', font: '14px system-ui, sans-serif'});
        label.textContent = words(count, changed.size);
        outlines = [...news]
            .map((fieldName) => [fieldNamed(fieldName), changed.has(fieldName)])
            .filter(([element]) => element && isSeen(element))
            .map(([element, isOther]) => outline(element, isOther ? changedColor : writtenColor));
        badge.attachShadow({mode: 'closed'}).append(label, ...outlines);
        document.documentElement.append(badge);
        badgeEnd = setTimeout(removeBadge, badgeTime);
    }

    // One plan

    /** After what the page's own scripts have put off, and yet at once: a timer of a window that is
     *  covered may be a second late. */
    function afterPage(act) {
        const {port1, port2} = new MessageChannel();
        port1.onmessage = () => {
            port1.close();
            act();
        };
        port2.postMessage(null);
    }

    /** @param answer gets the numbers of fields, and the notes that were due */
    function fill({steps, quiet}, announce, answer) {
        const written = new Map();
        const notes = walk(steps, written);
        const news = quiet ? new Set() : tell(written, announce);
        afterPage(() => {
            const changed = lookBack(written, news, quiet);
            answer({written: written.size, changed: changed.size}, notes);
            try {
                if (news.size > 0)
                    showBadge(written.size, news, changed);
            } catch {
                // A document of another kind has no place for it.
            }
        });
    }

    // The way to the program

    let port = null;
    let left = false;

    function connect() {
        if (port || left)
            return;
        // The one name that is the browser's own in both browsers; in Chromium "browser" may be an
        // element.
        const opened = globalThis.chrome.runtime.connect({name: 'page'});
        port = opened;
        opened.onMessage.addListener(({id, steps, quiet, toldBefore}) => {
            if (port !== opened)
                return;
            remember(toldBefore);
            const announce = (nowTold) => {
                opened.postMessage({told: nowTold});
                isDeedKnown = false;
            };
            fill({steps, quiet}, announce, (fields, notes) => {
                if (port === opened)
                    opened.postMessage({id, fields, notes});
            });
        });
        opened.onDisconnect.addListener(() => {
            if (port === opened)
                port = null;
        });
    }

    /** What the page that posted itself back, or loaded itself anew, was told: before any deed in
     *  this one. Who goes back to a page wants it told anew; so does who loads it anew by a key,
     *  which was a deed in the one before. */
    function remember(toldBefore) {
        // A page that was kept knows better.
        if (!toldBefore || told.size > 0 ||
            performance.getEntriesByType('navigation')[0]?.type === 'back_forward')
            return;
        for (const [fieldName, number] of toldBefore)
            told.set(fieldName, {number, element: null, deeds: 0, shown: null, held: null,
                                 changed: false});
    }

    let isDeedKnown = false; // to the extension, since the page was last told

    function noteDeed(event) {
        if (!event.isTrusted)
            return;
        ++deeds;
        if (isDeedKnown || !port)
            return;
        isDeedKnown = true;
        port.postMessage({deed: true});
    }

    /** Chromium does not always tell the extension that another program's window had the focus, and
     *  then not that its own has it again. */
    function noteFocus(event) {
        if (event.isTrusted && event.target === window)
            port?.postMessage({focused: true});
    }

    // The page may send such events as well, but has no say in this.
    function leave(event) {
        if (!event.isTrusted)
            return;
        left = true;
        removeBadge();
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
    addEventListener('focus', noteFocus, {capture: true});
    for (const move of ['scroll', 'resize'])
        addEventListener(move, removeOutlines, {capture: true, passive: true});
    // Not a reset, which a page's script may do as well: a person's comes of a click or a key.
    for (const deed of ['pointerdown', 'keydown', 'click', 'input'])
        addEventListener(deed, noteDeed, {capture: true, passive: true});
    connect();
})();
