// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// Puts the weight into the field with the cursor, once, when the person asks for it.
'use strict';

(() => {
    const fields = globalThis[Symbol.for('org.postalscale.fields')];
    if (fields.put)
        return;

    const units = ['lb', 'oz', 'kg', 'g'];
    const nextUnitTime = 3000; // ms
    const longestLabel = 80; // characters, in the list of what is remembered

    let last = {element: null, time: -Infinity, unit: null, first: null};

    /** Where the cursor is, as far as this frame can see. */
    function cursor() {
        const element = fields.focusedElement();
        if (element instanceof HTMLIFrameElement || element instanceof HTMLFrameElement)
            return 'frame';
        return element === null || element === document.body ? 'nowhere' : 'field';
    }

    function firstUnit(element, panelUnit) {
        if (!fields.isFreeText(element) && fields.pairOf(element))
            return 'lb oz';
        const panel = panelUnit === 'lb oz' ? 'lb' : panelUnit;
        return fields.unitOf(element) ?? (units.includes(panel) ? panel : 'lb');
    }

    /** The first one again after the last. */
    function unitFor(element, panelUnit) {
        const isAgain = last.element === element && performance.now() - last.time < nextUnitTime;
        if (!isAgain)
            return {unit: firstUnit(element, panelUnit), first: firstUnit(element, panelUnit)};
        // The other half would keep what was put there before.
        if (last.first === 'lb oz')
            return {unit: last.first, first: last.first};
        const order = [last.first, ...units.filter((unit) => unit !== last.first)];
        return {unit: order[(order.indexOf(last.unit) + 1) % order.length], first: last.first};
    }

    /** In which the person has put the weight there, if it was not the first. */
    function chosenUnit(element) {
        return last.element === element && last.unit !== last.first ? last.unit : null;
    }

    function put({texts, unit: panelUnit}) {
        const element = fields.focusedElement();
        const why = fields.whyNot(element);
        if (why)
            return fields.say(why, {trouble: true});
        const {unit, first} = unitFor(element, panelUnit);
        const {parts, why: unfit} = fields.partsFor(element, unit, texts);
        last = {element, time: performance.now(), unit, first};
        if (unfit)
            return fields.say(`${unfit} (${unit})`, {trouble: true});
        if (fields.isFreeText(element)) {
            fields.write(element, `${parts[0].text} ${unit}`);
            return fields.say(fields.words(parts, unit));
        }
        for (const part of parts)
            fields.write(part.element, part.text);
        fields.afterPage(() => {
            const isOther = parts.some((part) => !fields.shows(part.element, part.text));
            fields.say(isOther ? 'the field shows another number' : fields.words(parts, unit),
                       {trouble: isOther});
        });
    }

    /** Of the field with the cursor, to be known again by.
     *  @param recipes those of this origin
     *  @returns {why} not, {known: the id of its recipe}, or {signs, unit, isChosen} */
    function describe(recipes) {
        const element = fields.focusedElement();
        const why = fields.whyNot(element);
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

    Object.assign(fields, {cursor, put, describe});
})();
