// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// In which unit a field wants the weight, by all that names one around it, and which two fields want it
// as pounds and ounces. Everything here only looks.
'use strict';

(() => {
    const fields = globalThis[Symbol.for('org.postalscale.fields')] ??= {};
    const {numberTypes, shadowOf, parentOf, isFreeText, whyNot} = fields;

    const unitShapes = {
        // After a number too: "0.5kg".
        lb: /(?<![a-z])(?:lbs?|pounds?|libras?|livres?)\b/i,
        oz: /(?<![a-z])(?:oz|ounces?|onzas?|onces|unzen?)\b/i,
        kg: /(?<![a-z])(?:kgs?|kilos?|(?:k|ch)ilogr\w*)\b/i,
        // But not in "e.g. 2", "G.W." and "Gr. weight".
        g: /(?<![a-z.])(?:g|gr|gram(?:m\w*|s|os|as)?)(?!\w|\.\s?\w)/i,
    };
    const longestSuffix = 24; // characters
    const longestUnit = 16; // characters, such as "Kilograms (kg)"
    const levelsAround = 3;
    const levelsBeside = 2;

    // What names a unit

    /** Null where the text names none, or several. */
    function unitIn(text) {
        const named = Object.keys(unitShapes).filter((unit) => unitShapes[unit].test(text));
        return named.length === 1 ? named[0] : null;
    }

    /** "shipWeightKg" and "ship_weight_kg" are words. A single letter may mean anything there. */
    function unitInName({name = '', id}) {
        const wordsOf = (text) => text.replace(/([a-z\d])([A-Z])/g, '$1 $2').replace(/[^A-Za-z]+/g, ' ')
            .replace(/\b[A-Za-z]\b/g, ' ');
        return unitIn(wordsOf(name)) ?? unitIn(wordsOf(id));
    }

    /** Of an entry that is a unit and no more: "Letter up to 50 g" is a size. */
    const unitOfEntry = (text) => tidy(text).length <= longestUnit && !/\d/.test(text) ? unitIn(text)
                                                                                       : null;

    /** "max. 150 lbs" and "a 50-lb box" tell of a limit, which may be in another unit. */
    const unitBesideSizes = (text) => unitIn(text.replace(/\d[\d.,]*(?:\s*|-)[a-z]*/gi, ' '));

    /** Without what stands in lists and fields: the person's own text is none of the page's words. */
    function ownText(node) {
        if (node instanceof Text)
            return node.data;
        if (!(node instanceof HTMLElement) || node.isContentEditable ||
            node.matches('select, option, input, output, textarea, script, style'))
            return '';
        return [...node.childNodes].map(ownText).join(' ');
    }

    const tidy = (text) => text.replace(/[\s*:]+/g, ' ').trim();

    function labelledBy(element) {
        const ids = (element.getAttribute('aria-labelledby') ?? '').split(/\s+/).filter(Boolean);
        return ids.map((id) => element.getRootNode().getElementById?.(id)).filter(Boolean);
    }

    /** Empty where none is joined to the field. */
    function joinedLabel(element) {
        const labels = [...(element.labels ?? []), ...labelledBy(element)];
        return tidy(labels.map(ownText).join(' ')) || tidy(element.getAttribute('aria-label') ?? '');
    }

    /** What a person reads as the name of the field; empty where there is none. */
    const labelOf = (element) => joinedLabel(element) || textBeside(element, -1).text;

    // What stands beside the field

    /** In the order of the page, or from its end with the step -1. */
    function* fieldsIn(node, step) {
        if (node.matches('input, select, textarea') || node.isContentEditable) {
            yield node;
            return;
        }
        const inner = [...(shadowOf(node)?.children ?? []), ...node.children];
        for (const each of step > 0 ? inner : inner.reverse())
            yield* fieldsIn(each, step);
    }

    /** Of a list that the page has built itself: what it shows stands in it, or beside it. */
    const isInner = (element) => element.matches('input:is([role=combobox], [aria-hidden=true])') ||
        (element.readOnly === true && unitOfEntry(element.value) !== null);

    function firstField(node, step) {
        if (!(node instanceof HTMLElement))
            return null;
        for (const each of fieldsIn(node, step)) {
            if (!isInner(each))
                return each;
        }
        return null;
    }

    /** Up to the next field on that side. @param step 1 for what is behind, else -1
     *  @returns {text, field}: null where it meets none */
    function textBeside(element, step) {
        const side = step > 0 ? 'nextSibling' : 'previousSibling';
        let text = '';
        for (let here = element, level = 0; here && level < levelsBeside; here = parentOf(here)) {
            let field = null;
            for (let node = here[side]; node && !field; node = node[side]) {
                field = firstField(node, step);
                if (!field)
                    text = step > 0 ? `${text} ${ownText(node)}` : `${ownText(node)} ${text}`;
            }
            if (field || tidy(text) !== '')
                return {text: tidy(text), field};
            // An element of the page's own making is where it stands.
            level += here.parentElement ? 1 : 0;
        }
        return {text: '', field: null};
    }

    /** Whether the text in front of the field is its label, and not what belongs to the one before. */
    function isItsLabel(text, field) {
        const named = unitInName(field);
        if (named)
            return named === unitBesideSizes(text);
        const own = joinedLabel(field) || (field.placeholder ?? '');
        if (/[a-z]{2}/i.test(own))
            return (unitBesideSizes(own) ?? unitIn(own)) !== null;
        // "oz Zip"
        return !/^[^a-z]*[a-z]+[^a-z]+[a-z]{2}/i.test(text) || unitIn(text.replace(/^[^a-z]*[a-z]+/i, ''));
    }

    /** Of a row of fields with units between them: whether each has its own in front of it.
     *  @param beside as textBeside() returns it, with a unit */
    function areLabels(beside) {
        let {text, field} = beside;
        while (field) {
            const further = textBeside(field, 1);
            if (unitBesideSizes(further.text) === null)
                return Boolean(isItsLabel(text, field));
            ({text, field} = further);
        }
        return false;
    }

    /** Of a long text, the first word alone belongs to the field: "kg Postal code of the receiver". */
    const suffixIn = (text) => text.length <= longestSuffix ? text : text.split(' ', 1)[0];

    /** What stands between two fields may be the one's suffix, or the other's label. */
    function unitInSuffix(element) {
        const after = textBeside(element, 1);
        const unit = unitBesideSizes(suffixIn(after.text));
        if (!unit || !after.field)
            return unit;
        const before = textBeside(element, -1);
        const unitBefore = unitBesideSizes(before.text);
        const named = unitInName(element);
        if (unitBefore && named && [unit, unitBefore].includes(named))
            return named;
        const isInFront = unitBefore && (!before.field || areLabels(after));
        return isInFront ? unitBefore : unit;
    }

    /** A list or buttons of units that belong to no other field. */
    function unitInList(element) {
        let around = parentOf(element);
        for (let level = 0; around && level < levelsAround; around = parentOf(around), ++level) {
            const others = [...around.querySelectorAll('input')]
                .filter((each) => each !== element && numberTypes.includes(each.type));
            if (!others.every(isInner))
                return null;
            const shown = others.map((each) => unitOfEntry(each.value)).find(Boolean);
            if (shown)
                return shown;
            for (const list of around.querySelectorAll('select')) {
                const chosen = list.selectedOptions[0];
                const unit = chosen && (unitOfEntry(chosen.textContent) ?? unitOfEntry(chosen.value));
                if (unit)
                    return unit;
            }
            for (const button of around.querySelectorAll('input[type=radio]:checked')) {
                const unit = unitOfEntry(labelOf(button)) ?? unitOfEntry(button.value);
                if (unit)
                    return unit;
            }
        }
        return null;
    }

    /** What names a limit names a unit as well, where nothing else does. */
    function unitInLimit(element) {
        const {text, field} = textBeside(element, 1);
        return text.length <= longestSuffix && !field ? unitIn(text) : null;
    }

    /** Null where the field does not say. */
    function unitOf(element) {
        if (isFreeText(element))
            return null;
        const label = joinedLabel(element);
        const example = `${element.placeholder} ${element.title}`;
        // What stands before it may be the unit of the field before.
        const before = textBeside(element, -1).text;
        return unitInList(element) ?? unitBesideSizes(label) ?? unitInSuffix(element) ??
               unitBesideSizes(example) ?? unitBesideSizes(before) ?? unitInName(element) ??
               // A size is better than nothing: "0.5kg".
               unitIn(label) ?? unitIn(example) ?? unitIn(before) ?? unitInLimit(element);
    }

    // A field of pounds directly before one of ounces

    /** Each may be in a shadow tree of its own. */
    function neighbour(element, step) {
        const side = step > 0 ? 'nextElementSibling' : 'previousElementSibling';
        for (let here = element; here; here = parentOf(here)) {
            for (let node = here[side]; node; node = node[side]) {
                for (const other of fieldsIn(node, step)) {
                    if (other.type !== 'hidden')
                        return other instanceof HTMLInputElement && whyNot(other) === '' ? other : null;
                }
            }
        }
        return null;
    }

    /** A field of another form is sent with other things; one in a shadow tree knows of no form. */
    const mayShareForm = (one, other) => !one.form || !other.form || one.form === other.form;

    /** As [pounds, ounces]; null where the field is no half of such a pair. */
    function pairOf(element) {
        const unit = unitOf(element);
        const other = unit === 'lb' ? neighbour(element, 1) : unit === 'oz' ? neighbour(element, -1)
                                                                           : null;
        if (!other || unitOf(other) !== (unit === 'lb' ? 'oz' : 'lb') || !mayShareForm(element, other))
            return null;
        return unit === 'lb' ? [element, other] : [other, element];
    }

    Object.assign(fields, {unitOf, labelOf, pairOf});
})();
