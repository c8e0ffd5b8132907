// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// What a field says of itself: whether a weight may be written into it, in which unit, and in which
// form. Everything here only looks; in a page, beside its own scripts.
'use strict';

(() => {
    // Not by a name: the page's elements are properties of the global object by theirs.
    const fields = globalThis[Symbol.for('org.postalscale.fields')] ??= {};

    const numberTypes = ['text', 'number', 'tel', 'search'];
    const neverFilledIn = /^(?:cc-.*|(?:current|new)-password|one-time-code|username|email)$/i;

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

    // Its unit

    /** Null where the text names none, or several. */
    function unitIn(text) {
        const named = Object.keys(unitShapes).filter((unit) => unitShapes[unit].test(text));
        return named.length === 1 ? named[0] : null;
    }

    /** "shipWeightKg" and "ship_weight_kg" are words. A single letter may mean anything there. */
    function unitInName(name) {
        const words = name.replace(/([a-z\d])([A-Z])/g, '$1 $2').replace(/[^A-Za-z]+/g, ' ');
        return unitIn(words.replace(/\b[A-Za-z]\b/g, ' '));
    }

    /** Without what stands in lists and fields. */
    function ownText(node) {
        if (node instanceof Text)
            return node.data;
        if (!(node instanceof HTMLElement) || node.matches('select, option, input, output, script, style'))
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
    const labelOf = (element) => joinedLabel(element) || textBeside(element, 'previousSibling').text;

    /** Of a list that the page has built itself: what it shows stands in it, or beside it. */
    const isInner = (element) => element.matches('input:is([role=combobox], [aria-hidden=true])') ||
        (element.readOnly === true && unitOfEntry(element.value) !== null);

    const hasField = (node) => node instanceof HTMLElement &&
        [node, ...node.querySelectorAll('input, select, textarea')]
            .some((each) => each.matches('input, select, textarea') && !isInner(each));

    /** Up to the next field on that side. @returns {text, meetsField} */
    function textBeside(element, side) {
        let text = '';
        let meetsField = false;
        for (let here = element, level = 0; here && level < 2; here = here.parentElement, ++level) {
            let node = here[side];
            for (; node && !hasField(node); node = node[side])
                text = side === 'nextSibling' ? `${text} ${ownText(node)}` : `${ownText(node)} ${text}`;
            meetsField = node !== null;
            if (tidy(text) !== '' || (here[side] && hasField(here[side])))
                break;
        }
        return {text: tidy(text), meetsField};
    }

    /** What stands between two fields may be the one's suffix, or the other's label. */
    function unitInSuffix(element) {
        const after = textBeside(element, 'nextSibling');
        const before = textBeside(element, 'previousSibling');
        const unit = after.text.length <= longestSuffix ? unitIn(after.text) : null;
        const isNextOnes = after.meetsField && !before.meetsField && unitIn(before.text) !== null;
        return isNextOnes ? unitIn(before.text) : unit;
    }

    /** Of an entry that is a unit and no more: "Letter up to 50 g" is a size. */
    const unitOfEntry = (text) => tidy(text).length <= longestUnit && !/\d/.test(text) ? unitIn(text)
                                                                                       : null;

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

    /** Null where the field does not say. */
    function unitOf(element) {
        if (isFreeText(element))
            return null;
        // What stands before it may be the unit of the field before.
        // A label or an example may name a limit: "max. 150 lbs".
        return unitInList(element) ?? unitIn(joinedLabel(element)) ?? unitInSuffix(element) ??
               unitIn(`${element.placeholder} ${element.title}`) ??
               unitIn(textBeside(element, 'previousSibling').text) ?? unitInName(element.name) ?? unitInName(element.id);
    }

    // A field of pounds directly before one of ounces

    function neighbour(element, step) {
        const inputs = [...element.getRootNode().querySelectorAll('input, textarea, select')]
            .filter((each) => each.type !== 'hidden');
        const other = inputs[inputs.indexOf(element) + step];
        return other instanceof HTMLInputElement && whyNot(other) === '' ? other : null;
    }

    /** As [pounds, ounces]; null where the field is no half of such a pair. */
    function pairOf(element) {
        const unit = unitOf(element);
        const other = unit === 'lb' ? neighbour(element, 1) : unit === 'oz' ? neighbour(element, -1)
                                                                           : null;
        if (!other || unitOf(other) !== (unit === 'lb' ? 'oz' : 'lb'))
            return null;
        return unit === 'lb' ? [element, other] : [other, element];
    }

    Object.assign(fields, {shadowOf, parentOf, focusedElement, allInputs, isFreeText, whyNot, unitOf,
                           labelOf, pairOf});
})();
