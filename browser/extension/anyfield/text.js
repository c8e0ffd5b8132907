// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// Writes where the cursor is in text that holds more than a number: by the browser's own editing, which
// the person can undo.
'use strict';

(() => {
    const fields = globalThis[Symbol.for('org.postalscale.fields')] ??= {};

    function selectInArea(element, text) {
        const {selectionStart: start, selectionEnd: end, value} = element;
        if (start !== end || !value.slice(0, end).endsWith(text))
            return false;
        element.setSelectionRange(end - text.length, end);
        return true;
    }

    /** Whatever elements the page's own editor has made of it. */
    function selectInEditable(element, text) {
        const selection = element.getRootNode().getSelection?.() ?? document.getSelection();
        if (!selection.isCollapsed)
            return false;
        for (let count = 0; count < text.length; ++count)
            selection.modify('extend', 'backward', 'character');
        // Some of its spaces may have become such that do not break.
        if (selection.toString().replaceAll('\u00a0', ' ') === text)
            return true;
        selection.collapseToEnd();
        return false;
    }

    /** Where nothing else has come between that text and the cursor. */
    const select = (element, text) => element instanceof HTMLTextAreaElement
        ? selectInArea(element, text) : selectInEditable(element, text);

    /** @param before what is to be replaced, which stands before the cursor; empty if nothing
     *  @returns why it could not be written, else empty */
    function writeText(element, text, before) {
        if (fields.focusedElement() !== element)
            return 'The cursor has left the text: click there again';
        if (before !== '' && !select(element, before))
            return 'The text has changed: put the cursor where the weight is to stand, and wait a moment';
        document.execCommand('insertText', false, text);
        return '';
    }

    Object.assign(fields, {writeText});
})();
