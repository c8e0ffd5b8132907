// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// Puts the weight into the field that the person has asked for, once.
'use strict';

(() => {
    const fields = globalThis[Symbol.for('org.postalscale.fields')];
    if (fields.put)
        return;

    const units = ['lb', 'oz', 'kg', 'g'];
    const nextUnitTime = 3000; // ms
    const longestLabel = 80; // characters, in the list of what is remembered

    let last = {element: null, time: -Infinity, unit: null, first: null};

    function firstUnit(element, panelUnit) {
        if (!fields.isFreeText(element) && fields.pairOf(element))
            return 'lb oz';
        const panel = panelUnit === 'lb oz' ? 'lb' : panelUnit;
        return fields.unitOf(element) ?? (units.includes(panel) ? panel : 'lb');
    }

    /** But not where the page has another unit by now. */
    const isAgain = (element, first) => last.element === element && last.first === first &&
                                        performance.now() - last.time < nextUnitTime;

    /** The first one again after the last. */
    function unitFor(element, panelUnit) {
        const first = firstUnit(element, panelUnit);
        if (!isAgain(element, first))
            return {unit: first, first};
        // The other half would keep what was put there before.
        if (first === 'lb oz')
            return {unit: first, first};
        const order = [first, ...units.filter((unit) => unit !== first)];
        return {unit: order[(order.indexOf(last.unit) + 1) % order.length], first};
    }

    /** In which the person has put the weight there, if it was not the first. */
    function chosenUnit(element) {
        return last.element === element && last.unit !== last.first ? last.unit : null;
    }

    /** @param deed of which fields.target() knows the field
     *  @returns false where its page is gone */
    function put({deed, texts, unit: panelUnit}) {
        const {element, isGone} = fields.target(deed);
        if (isGone)
            return false;
        const why = fields.whyNot(element);
        if (why)
            fields.say(why, {trouble: true});
        else
            putInto(element, texts, panelUnit);
        return true;
    }

    function putInto(element, texts, panelUnit) {
        const {unit, first} = unitFor(element, panelUnit);
        const {parts, why} = fields.partsFor(element, unit, texts);
        if (fields.isFreeText(element) && !why)
            return putIntoText(element, `${parts[0].text} ${unit}`, {unit, first});
        const deed = {element, time: performance.now(), unit, first};
        last = deed;
        if (why)
            return fields.say(`${why} (${unit})`, {trouble: true});
        fields.write(parts);
        fields.afterPage(() => {
            Object.assign(deed, {words: fields.words(parts, unit), held: element.value});
            fields.sayOutcome(parts, deed.words);
        });
    }

    /** Whether the person has put just that there, and it is there still. */
    const isPut = (element, words) => last.element === element && last.words === words &&
                                      last.held === element.value;

    /** In place of what the same deed has written just before. */
    function putIntoText(element, text, chosen) {
        const before = isAgain(element, chosen.first) ? last.text ?? '' : '';
        const {why, isThere} = fields.writeText(element, text, before);
        if (why)
            return fields.say(why, {trouble: true});
        last = {element, time: performance.now(), text, ...chosen};
        fields.afterPage(() => {
            const isTaken = isThere();
            fields.say(isTaken ? text : 'The page did not take the weight', {trouble: !isTaken});
        });
    }

    /** Of the field that the deed was meant for, to be known again by.
     *  @param recipes those of this origin
     *  @returns {why} not, {known: the id of its recipe}, or {signs, unit, isChosen} */
    function describe({deed, recipes}) {
        const {element, isGone} = fields.target(deed);
        const why = isGone ? 'This page has become another one: try again' : fields.whyNot(element);
        if (why)
            return {why};
        if (fields.isFreeText(element))
            return {why: 'Only fields of one line can be remembered'};
        const inputs = fields.allInputs();
        const halves = fields.pairOf(element) ?? [element];
        const known = recipes.find(({signs}) => halves.includes(fields.find(signs, inputs).element));
        if (known)
            return {known: known.id};
        const signs = fields.signsOf(element);
        if (!fields.isKnowable(signs))
            return {why: 'This field has no name and no label to be known again by'};
        const found = fields.find(signs, inputs);
        if (found.element !== element)
            return {why: 'Another field here looks the same, so neither can be remembered'};
        const chosen = chosenUnit(element);
        return {signs, label: fields.labelOf(element).slice(0, longestLabel), isChosen: chosen !== null,
                unit: chosen ?? (fields.pairOf(element) ? 'lb oz' : fields.unitOf(element))};
    }

    Object.assign(fields, {put, isPut, describe});
})();
