// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// In which form a number fits into a field: its step, its limits, its length, its pattern, and the
// comma that other languages have for the point.
'use strict';

(() => {
    const fields = globalThis[Symbol.for('org.postalscale.fields')] ??= {};

    const tiny = 1e-9; // what binary fractions of decimals are off by

    const decimalsIn = (text) => /\.(\d+)$/.exec(text)?.[1].length ?? 0;

    /** Of a postal weight, any fraction counts for more. */
    const roundedUp = (number, decimals) =>
        String(Number((Math.ceil(number * 10 ** decimals - tiny) / 10 ** decimals).toFixed(decimals)));

    function onStep(text, element) {
        const step = element.getAttribute('step') ?? '';
        if (!(Number(step) > 0))
            return text;
        const base = Number(element.min) || 0;
        const steps = Math.ceil((Number(text) - base) / Number(step) - tiny);
        const decimals = Math.max(decimalsIn(step), decimalsIn(element.min));
        return String(Number((base + steps * Number(step)).toFixed(decimals)));
    }

    function fitInNumber(text, element) {
        const stepped = onStep(text, element);
        if (element.max !== '' && Number(stepped) > Number(element.max))
            return {why: `This field takes ${element.max} at most`};
        if (element.min !== '' && Number(stepped) < Number(element.min))
            return {why: `This field takes ${element.min} at least`};
        return {text: stepped};
    }

    function languageHasComma(element) {
        try {
            const {lang} = fields.parentOf(element)?.closest('[lang]') ?? document.documentElement;
            return new Intl.NumberFormat(lang || 'en').format(0.5).includes(',');
        } catch {
            return false; // no such language
        }
    }

    function wantsComma(element) {
        const example = /\d([.,])\d/.exec(element.placeholder ?? '')?.[1];
        return example ? example === ',' : languageHasComma(element);
    }

    function patternOf(element) {
        try {
            return element.pattern ? new RegExp(`^(?:${element.pattern})$`, 'v') : /^/;
        } catch {
            return /^/; // the browser passes over such a pattern as well
        }
    }

    /** With fewer decimals, if it must. */
    function fitInText(text, element) {
        const points = wantsComma(element) ? [',', '.'] : ['.', ','];
        const pattern = patternOf(element);
        const longest = element.maxLength > 0 ? element.maxLength : Infinity;
        for (let decimals = decimalsIn(text); decimals >= 0; --decimals) {
            for (const point of points) {
                const candidate = roundedUp(Number(text), decimals).replace('.', point);
                if (candidate.length <= longest && pattern.test(candidate))
                    return {text: candidate};
            }
        }
        return {why: 'The weight does not fit into this field'};
    }

    /** @param text a number as scripts spell it
     *  @returns {text} as it is to be written, or {why} not */
    function fit(text, element) {
        if (fields.isFreeText(element))
            return {text: languageHasComma(element) ? text.replace('.', ',') : text};
        return element.type === 'number' ? fitInNumber(text, element) : fitInText(text, element);
    }

    /** Whether the field shows the number still, in whatever form. */
    function shows(element, text) {
        const number = (shown) => Number(shown.replace(/[^\d.,-]/g, '').replace(',', '.'));
        return element.value === text || (element.value !== '' && number(element.value) === number(text));
    }

    Object.assign(fields, {fit, shows});
})();
