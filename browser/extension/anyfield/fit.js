// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// In which form a number fits into a field: its step, its limits, its length, its pattern, and the
// comma that other languages have for the point.
'use strict';

(() => {
    const fields = globalThis[Symbol.for('org.postalscale.fields')] ??= {};

    const tiny = 1e-9; // what binary fractions of decimals are off by

    /** Of a number as pages may spell it: "0.05", ".5", "1e-3". */
    function decimalsIn(text) {
        const [, fraction = '', exponent = '0'] = /^[+-]?\d*(?:\.(\d+))?(?:e([+-]?\d+))?$/i.exec(text) ?? [];
        return Math.max(fraction.length - Number(exponent), 0);
    }

    /** Of a postal weight, any fraction counts for more. */
    const roundedUp = (number, decimals) =>
        String(Number((Math.ceil(number * 10 ** decimals - tiny) / 10 ** decimals).toFixed(decimals)));

    const isNumber = (text) => text !== '' && Number.isFinite(Number(text));

    /** A page that says none has steps of one, which count where the browser itself would hold the form
     *  back for another number. Null where there are none. */
    function stepOf(element) {
        const step = (element.getAttribute('step') ?? '').trim();
        if (step.toLowerCase() === 'any')
            return null;
        if (Number(step) > 0)
            return step;
        return element.willValidate && element.form?.noValidate === false ? '1' : null;
    }

    const isMultiple = (number, step) => Math.abs(number / step - Math.round(number / step)) < tiny;

    function onStep({text, exact, decimals}, element) {
        const step = stepOf(element);
        if (step === null)
            return text;
        // Where the steps begin.
        const base = [element.min, element.defaultValue].find(isNumber) ?? '0';
        // All that the program writes is on a step.
        if (isMultiple(10 ** -decimals, Number(step)) && isMultiple(Number(base), Number(step)))
            return text;
        const steps = Math.ceil((Number(exact) - Number(base)) / Number(step) - tiny);
        const places = Math.max(decimalsIn(step), decimalsIn(base));
        return String(Number((Number(base) + steps * Number(step)).toFixed(places)));
    }

    function fitInNumber(number, element) {
        const stepped = onStep(number, element);
        if (element.max !== '' && Number(stepped) > Number(element.max))
            return {why: `This field takes ${element.max} at most`};
        if (element.min !== '' && Number(stepped) < Number(element.min))
            return {why: `This field takes ${element.min} at least`};
        return {text: stepped};
    }

    /** Undefined where it may be a group of thousands: "1,000". */
    function pointOfExample(example) {
        const [number = ''] = /\d[\d.,]*\d/.exec(example) ?? [];
        const marks = number.match(/[.,]/g) ?? [];
        const last = marks.at(-1);
        // Two kinds: the last one is the point.
        if (new Set(marks).size === 2)
            return last;
        if (marks.length > 1)
            return last === ',' ? '.' : ',';
        return looksGrouped(number) ? undefined : last;
    }

    /** Whether a page that takes this mark may take it for one between thousands, and pass over it. */
    const mayGroup = (pattern, mark) => pattern.test(`1${mark}000${mark}000`);

    const looksGrouped = (number) => /^[1-9]\d{0,2}[.,]\d{3}$/.test(number);

    const pointFor = (element) =>
        pointOfExample(element.placeholder) ?? (fields.isCommaDecimal(element) ? ',' : '.');

    function patternOf(element) {
        try {
            return element.pattern ? new RegExp(`^(?:${element.pattern})$`, 'v') : /^/;
        } catch {
            return /^/; // the browser passes over such a pattern as well
        }
    }

    /** With fewer decimals, if it must: which it takes, a number that has them all shows. */
    function fitInText({text, exact, decimals: most}, element) {
        const point = pointFor(element);
        const pattern = patternOf(element);
        const longest = element.maxLength > 0 ? element.maxLength : Infinity;
        const fits = (candidate) => candidate.length <= longest && pattern.test(candidate);
        const otherMark = point === ',' ? '.' : ',';
        const points = mayGroup(pattern, otherMark) ? [point] : [point, otherMark];
        for (let decimals = most; decimals >= 0; --decimals) {
            const number = decimals === most ? text : roundedUp(Number(exact), decimals);
            const whole = Number(number).toFixed(decimals);
            for (const mark of points) {
                const [short, long] = [number, whole].map((each) => each.replace('.', mark));
                if (fits(long))
                    return {text: fits(short) ? short : long};
            }
        }
        return {why: 'The weight does not fit into this field'};
    }

    /** @param number as the program writes it, as scripts spell it: {text}, with the most decimals that
     *  it writes in this unit, and {exact}, with more of them, from which fewer are made
     *  @returns {text} as it is to be written, or {why} not */
    function fit({text, exact = text, decimals}, element) {
        if (fields.isFreeText(element))
            return {text: fields.isCommaDecimal(element) ? text.replace('.', ',') : text};
        const number = {text, exact, decimals};
        return element.type === 'number' ? fitInNumber(number, element) : fitInText(number, element);
    }

    /** Whether the field shows the number still, in whatever form. @param text as it was written */
    const shows = (element, text) =>
        element.value === text || fields.holds(element, Number(text.replace(',', '.')));

    Object.assign(fields, {fit, shows});
})();
