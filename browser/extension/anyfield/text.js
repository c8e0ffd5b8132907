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

    const count = (text, whole) => whole.replaceAll('\u00a0', ' ').split(text).length - 1;
    const wholeText = (element) => element.value ?? element.textContent;

    function selectedText(element) {
        if (element instanceof HTMLTextAreaElement)
            return element.value.slice(element.selectionStart, element.selectionEnd);
        return String(element.getRootNode().getSelection?.() ?? document.getSelection());
    }

    /** The browser would cut off the rest without a word. @param room that becomes free, in characters */
    const isTooLong = (element, text, room) => element instanceof HTMLTextAreaElement &&
        element.maxLength >= 0 && element.value.length - room + text.length > element.maxLength;

    /** @param before what is to be replaced, which stands before the cursor; empty if nothing
     *  @returns {why} not, or {isThere} that tells whether the page has kept it */
    function writeText(element, text, before) {
        if (fields.focusedElement() !== element)
            return {why: 'The cursor has left the text: click there again'};
        if (isTooLong(element, text, before.length || selectedText(element).length))
            return {why: 'The weight does not fit into this text'};
        if (before !== '' && !select(element, before))
            return {why: 'The text has changed: put the cursor where the weight is to stand, and wait a moment'};
        const kept = count(text, wholeText(element)) - count(text, selectedText(element));
        document.execCommand('insertText', false, text);
        return {isThere: () => count(text, wholeText(element)) > kept};
    }

    Object.assign(fields, {writeText});
})();
