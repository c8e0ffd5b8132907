// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// Which number a field shows. In a page, beside its own scripts.
'use strict';

(() => {
    // Not by a name: the page's elements are properties of the global object by theirs.
    const fields = globalThis[Symbol.for('org.postalscale.fields')] ??= {};

    /** What a page may show, with no other number after it. */
    const shownShape = /^\s*([+-]?[\d.,]*\d[.,]?)[^\d,]*$/;
    const plainShape = /^[+-]?(?:\d+[.,]?\d*|[.,]\d+)$/;
    const commaGroupsShape = /^[+-]?[1-9]\d{0,2}(?:,\d{3})+(?:\.\d*)?$/;
    const pointGroupsShape = /^[+-]?[1-9]\d{0,2}(?:\.\d{3})+(?:,\d*)?$/;

    function languageOf(element) {
        for (let here = element; here; here = here.getRootNode().host) {
            const speaking = here.closest('[lang]');
            if (speaking)
                return speaking.lang || 'en';
        }
        return 'en';
    }

    /** Whether "1,000" is one, in the language of the page. */
    function isCommaDecimal(element) {
        try {
            return new Intl.NumberFormat(languageOf(element)).format(0.5).includes(',');
        } catch {
            return false; // no such language
        }
    }

    /** A number in one of the ways that pages have: with a comma for the point, or in groups. Where
     *  both could be meant, one is a thousand times the other. */
    function numberOf(text, element) {
        const isPlain = plainShape.test(text);
        const isComma = isPlain && isCommaDecimal(element);
        if (commaGroupsShape.test(text) && !isComma)
            return Number(text.replaceAll(',', ''));
        if (pointGroupsShape.test(text) && (isComma || !isPlain))
            return Number(text.replaceAll('.', '').replace(',', '.'));
        return isPlain ? Number(text.replace(',', '.')) : NaN;
    }

    /** A field may show more than the number, such as a unit, but no second one. */
    function holds(element, number) {
        // These have points whatever the page's language.
        if (element.type === 'number' || element.type === 'range')
            return element.valueAsNumber === number;
        const written = String(number);
        const shown = shownShape.exec(element.value)?.[1];
        return element.value === written || shown === written ||
               (shown !== undefined && numberOf(shown, element) === number);
    }

    Object.assign(fields, {isCommaDecimal, numberOf, holds});
})();
