// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// Where a page has fields, and whether a weight may be written into one. Everything here only looks; in
// a page, beside its own scripts.
'use strict';

(() => {
    // Not by a name: the page's elements are properties of the global object by theirs.
    const fields = globalThis[Symbol.for('org.postalscale.fields')] ??= {};

    const numberTypes = ['text', 'number', 'tel', 'search'];
    const neverFilledIn = /^(?:cc-.*|(?:current|new)-password|one-time-code|username|email)$/i;

    // Where elements are

    /** Closed ones too, as far as the browser lets an extension see them. */
    function shadowOf(element) {
        if (!(element instanceof HTMLElement))
            return null;
        return globalThis.chrome?.dom?.openOrClosedShadowRoot?.(element) ??
               element.openOrClosedShadowRoot ?? element.shadowRoot ?? null;
    }

    const parentOf = (node) => node.parentElement ?? node.getRootNode().host ?? null;

    function focusedElement() {
        let element = document.activeElement;
        for (let inner = element; inner; inner = shadowOf(inner)?.activeElement)
            element = inner;
        return element;
    }

    /** The page's and those of its shadow trees. @param found gets each shadow root on the way */
    function allInputs(found = () => {}) {
        const inputs = [];
        const roots = [document];
        for (const root of roots) {
            for (const element of root.querySelectorAll('*')) {
                if (element instanceof HTMLInputElement) {
                    inputs.push(element);
                    continue;
                }
                const shadow = shadowOf(element);
                if (shadow) {
                    found(shadow);
                    roots.push(shadow);
                }
            }
        }
        return inputs;
    }

    // Whether it may be written into

    function isSeen(element) {
        const {width, height} = element.getBoundingClientRect();
        return width > 1 && height > 1 &&
               element.checkVisibility({checkOpacity: true, checkVisibilityCSS: true});
    }

    const isFreeText = (element) => element instanceof HTMLTextAreaElement ||
                                    element?.isContentEditable === true;

    function isForSecrets(element) {
        return element.type === 'password' ||
               (element.getAttribute('autocomplete') ?? '').split(/\s+/).some((word) => neverFilledIn.test(word));
    }

    /** Empty if it may. */
    function whyNot(element) {
        if (!(element instanceof HTMLInputElement) && !isFreeText(element))
            return 'Click into a field first';
        if (isForSecrets(element))
            return 'Passwords and cards are never written';
        if (element instanceof HTMLInputElement && !numberTypes.includes(element.type))
            return 'This field takes no number';
        if (element.matches(':disabled') || element.readOnly)
            return 'This field cannot be changed';
        return isSeen(element) ? '' : 'This field is hidden';
    }

    /** Whether a field for numbers may not be written into as it is now, but may be at another time. */
    const isClosed = (input) => numberTypes.includes(input.type) && !isForSecrets(input) &&
                                whyNot(input) !== '';

    Object.assign(fields, {numberTypes, shadowOf, parentOf, focusedElement, allInputs, isFreeText, whyNot,
                           isClosed});
})();
