// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// Fixes what the person's deed is meant for, before the program is waited for. The last of the files
// of such a deed: what it says goes back to the extension.
'use strict';

(() => {
    const fields = globalThis[Symbol.for('org.postalscale.fields')];
    if (fields.aim)
        return fields.aim();

    const mostDeeds = 8; // that wait for the program at a time

    /** By a number that no other document has. */
    const aims = new Map();
    let underMenu = null;

    /** @returns {id, hasFocus, isReached, cursor}: "field", "frame" or "nowhere", as far as this frame
     *  can see */
    fields.aim = () => {
        const focused = fields.focusedElement();
        const hasFocus = document.hasFocus();
        const id = Math.random();
        aims.set(id, {focused, hasFocus, underMenu});
        if (aims.size > mostDeeds)
            aims.delete(aims.keys().next().value);
        return {id, hasFocus, isReached: isReached(), cursor: cursorIn(focused)};
    };

    function cursorIn(focused) {
        if (focused instanceof HTMLIFrameElement || focused instanceof HTMLFrameElement)
            return 'frame';
        return focused === null || focused === document.body ? 'nowhere' : 'field';
    }

    /** Whether the cursor of each frame around is in the frame on the way here. It is no more than that:
     *  with the focus in the browser's own toolbar, no frame has it. */
    function isReached() {
        try {
            for (let here = window; here !== here.parent; here = here.parent) {
                if (here.parent.document.activeElement !== here.frameElement)
                    return false;
            }
            return true;
        } catch {
            return false; // of another site
        }
    }

    function isAround(outer, inner) {
        for (let here = inner; here; here = fields.parentOf(here)) {
            if (here === outer)
                return true;
        }
        return false;
    }

    /** Of editable text, what may be edited as a whole. */
    function wholeOf(element) {
        let whole = element;
        while (whole?.isContentEditable && whole.parentElement?.isContentEditable)
            whole = whole.parentElement;
        return whole;
    }

    /** Firefox tells by a handle which element the menu was opened on. Chromium does not: there it is
     *  seen from the second menu of a page on, and the first one is of the field with the cursor, which
     *  a click with the right button places as well, unless the page prevents it. */
    function elementOfMenu({handle, wasAsked}, {focused, hasFocus, underMenu: seen}) {
        if (handle !== undefined)
            return wholeOf(globalThis.browser.menus.getTargetElement(handle));
        // What a closed shadow tree holds is not seen from outside.
        if (seen && !isAround(seen, focused))
            return wholeOf(seen);
        return hasFocus || wasAsked ? focused : null;
    }

    /** @param menu none where the deed was none of a menu; else the browser's handle of the element, if
     *  it has one, and whether it has asked the person for the site, which takes the focus away
     *  @returns {isGone: true} where another document stands there by now, or {element} */
    fields.target = ({id, menu}) => {
        const aim = aims.get(id);
        aims.delete(id);
        if (!aim)
            return {isGone: true};
        return {element: menu ? elementOfMenu(menu, aim) : aim.focused};
    };

    // In front of the page's own scripts, as far as these came later.
    for (const deed of ['pointerdown', 'keydown', 'contextmenu']) {
        addEventListener(deed, (event) => {
            if (event.isTrusted)
                underMenu = deed === 'contextmenu' ? event.composedPath()[0] : null;
        }, {capture: true, passive: true});
    }
    return fields.aim();
})();
