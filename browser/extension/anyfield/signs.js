// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// By what a field is known again: at the next visit, and in the page's next version. On a tie it is
// none rather than the wrong one.
'use strict';

(() => {
    const fields = globalThis[Symbol.for('org.postalscale.fields')] ??= {};

    // The first four say which field it is; where it stands, and of which type it is, only adds to it.
    const identity = {name: 4, label: 4, id: 3, placeholder: 2};
    const surroundings = {path: 2, type: 1};
    const leastKnown = 3;   // more than half a label, or all that the field had
    const leastShare = 0.5; // of the weights of all signs that the field had
    const leastLead = 2;    // before the next best, by identity alone
    const levels = 4;
    const longest = 80;     // characters of a sign

    /** What a page numbers anew at each visit is no sign. */
    const lasting = (text) => text.replace(/(?=[a-z]*\d)[\da-f]{6,}|\d{3,}/gi, '#');
    const isSaying = (text) => /[^\W\d_]{2}/.test(text);
    const sign = (text) => {
        const kept = lasting(text.trim()).slice(0, longest);
        return isSaying(kept) ? kept : '';
    };

    function step(element) {
        const siblings = [...(element.parentElement?.children ?? [])]
            .filter((each) => each.localName === element.localName);
        return `${element.localName}:${siblings.indexOf(element)}`;
    }

    function pathOf(element) {
        const steps = [];
        for (let here = element; here && steps.length < levels; here = fields.parentOf(here))
            steps.unshift(step(here));
        return steps.join('>');
    }

    /** The page of its site. Some applications keep theirs behind the "#". */
    function placeOfPage() {
        const [route = ''] = /^#!?\/[^?]*/.exec(location.hash) ?? [];
        return lasting(location.pathname + route);
    }

    function signsOf(element) {
        return {
            id: sign(element.id),
            name: sign(element.name),
            label: sign(fields.labelOf(element).toLowerCase()),
            placeholder: sign(element.placeholder.toLowerCase()),
            type: element.type,
            path: pathOf(element),
            place: placeOfPage(),
        };
    }

    /** A label may get a word more: "weight" is in "weight of the parcel". */
    function likeness(wanted, there) {
        if (wanted === there)
            return 1;
        const words = new Set(there.split(/\W+/));
        const shared = wanted.split(/\W+/).filter((word) => word !== '' && words.has(word)).length;
        const most = Math.max(wanted.split(/\W+/).length, words.size);
        return shared / most >= 0.3 ? 0.5 : 0;
    }

    function points(weights, wanted, there) {
        let sum = 0;
        for (const [name, weight] of Object.entries(weights)) {
            if (wanted[name] === '' || there[name] === '')
                continue;
            sum += weight * (name === 'label' || name === 'placeholder'
                ? likeness(wanted[name], there[name]) : Number(wanted[name] === there[name]));
        }
        return sum;
    }

    const most = (weights, wanted) => Object.entries(weights)
        .reduce((sum, [name, weight]) => sum + (wanted[name] === '' ? 0 : weight), 0);

    /** On another page of the site, a label alone is too little. */
    function isOtherPages(wanted, there) {
        const isSame = ['name', 'id'].some((each) => wanted[each] !== '' &&
                                                     wanted[each] === there[each]);
        return wanted.place !== there.place && !isSame;
    }

    /** A page may give the name of one field to another one, but people read the label. */
    function isOtherByLabel(wanted, there) {
        return wanted.label !== '' && there.label !== '' && likeness(wanted.label, there.label) === 0 &&
               (wanted.id === '' || wanted.id !== there.id);
    }

    function rate(wanted, element) {
        const there = signsOf(element);
        const isOther = isOtherPages(wanted, there) || isOtherByLabel(wanted, there);
        const known = isOther ? 0 : points(identity, wanted, there);
        const share = (known + points(surroundings, wanted, there)) /
                      (most(identity, wanted) + most(surroundings, wanted));
        return {element, known, share};
    }

    /** All of them, the best first; none where not even that one is the field. */
    function candidates(wanted, inputs) {
        const least = Math.min(leastKnown, most(identity, wanted));
        const [best, ...others] = inputs.map((each) => rate(wanted, each))
            .sort((one, other) => other.known - one.known || other.share - one.share);
        return best && best.known >= least && best.share >= leastShare ? [best, ...others] : [];
    }

    /** @returns {element}, or {why}: "missing", "alike", or "closed" where it may not be written into
     *  @param inputs to choose from */
    function find(wanted, inputs) {
        const [best, next] = candidates(wanted, inputs.filter((each) => fields.whyNot(each) === ''));
        if (!best) {
            const closed = candidates(wanted, inputs.filter(fields.isClosed));
            return {why: closed.length > 0 ? 'closed' : 'missing'};
        }
        // Where it stands does not tell it from another one: rows change their places.
        return next && best.known - next.known < leastLead ? {why: 'alike'}
                                                           : {element: best.element};
    }

    const isKnowable = (signs) => most(identity, signs) > 0;

    const isPageOf = (signs) => signs.place === placeOfPage();

    Object.assign(fields, {placeOfPage, isPageOf, signsOf, find, isKnowable});
})();
