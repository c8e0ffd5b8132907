// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// Writes into a field, tells the page, and says so to the person.
'use strict';

(() => {
    const fields = globalThis[Symbol.for('org.postalscale.fields')] ??= {};
    // The badge of an earlier copy of this file would stay beside that of this one.
    if (fields.say)
        return;

    const badgeTag = 'postal-scale-badge';
    const badgeTime = 5000; // ms; as long as a sentence takes to be noticed and read
    const goodColor = '#1a7f37';
    const troubleColor = '#b35900';

    /** Of what the program writes. */
    const mostDecimals = {'lb oz': 0, lb: 3, oz: 2, kg: 3, g: 1};

    let badge = null;
    let badgeEnd = 0;

    /** In the corner of this frame's page, whose own elements stay as they are. */
    function say(words, {trouble = false} = {}) {
        clearTimeout(badgeEnd);
        badge?.remove();
        badge = document.createElement(badgeTag);
        badge.setAttribute('role', 'status');
        Object.assign(badge.style, {all: 'initial', position: 'fixed', inset: '0',
                                    pointerEvents: 'none', zIndex: '2147483647'});
        const label = document.createElement('div');
        Object.assign(label.style, {position: 'fixed', right: '12px', bottom: '12px',
                                    padding: '6px 12px', color: 'white', borderRadius: '6px',
                                    background: trouble ? troubleColor : goodColor,
                                    font: '14px system-ui, sans-serif'});
        label.textContent = `Postal Scale: ${words}`;
        badge.attachShadow({mode: 'closed'}).append(label);
        document.documentElement.append(badge);
        badgeEnd = setTimeout(() => badge.remove(), badgeTime);
    }

    /** After what the page's own scripts have put off, and yet at once: a timer of a window that is
     *  covered may be a second late. */
    function afterPage(act) {
        const {port1, port2} = new MessageChannel();
        port1.onmessage = () => {
            port1.close();
            act();
        };
        port2.postMessage(null);
    }

    /** As the browser would, had it been typed: one event of each kind. Where there are two fields, both
     *  hold their numbers before the page is told of the first: it may work with either then. */
    function write(parts, {quiet = false} = {}) {
        for (const {element, text} of parts)
            element.value = text;
        for (const {element, text} of quiet ? [] : parts) {
            // A page that keeps a record of its own puts back what it was not told of yet.
            if (!fields.shows(element, text))
                element.value = text;
            element.dispatchEvent(new Event('input', {bubbles: true, composed: true}));
            element.dispatchEvent(new Event('change', {bubbles: true}));
        }
    }

    /** What the page has made of it. @param whole the words where it is as it was written */
    function sayOutcome(parts, whole) {
        const isAnew = parts.some(({element}) => !element.isConnected);
        const isOther = parts.some(({element, text}) => !fields.shows(element, text));
        fields.say(isAnew ? 'The page has made this field anew: see whether the weight is in it'
            : isOther ? 'the field shows another number' : whole, {trouble: isAnew || isOther});
    }

    /** One number for one field, or two for a pair: [{element, text}], as they are to be written.
     *  @param unit "lb oz" only of a field that is half of a pair
     *  @returns {parts} or {why} not */
    function partsFor(element, unit, texts) {
        const halves = unit === 'lb oz' ? fields.pairOf(element) : [element];
        const numbers = unit === 'lb oz' ? texts['lb oz'].split(' ') : [texts[unit]];
        if (numbers.some((number) => typeof number !== 'string'))
            return {why: 'The scale has no weight in this unit'};
        const parts = halves.map((each, index) => ({element: each, ...fields.fit(
            {text: numbers[index], exact: texts.exact?.[unit], decimals: mostDecimals[unit]}, each)}));
        const why = parts.find((part) => part.why)?.why;
        return why ? {why} : {parts};
    }

    const words = (parts, unit) => parts.length === 2
        ? `${parts[0].text} lb ${parts[1].text} oz` : `${parts[0].text} ${unit}`;

    Object.assign(fields, {say, sayOutcome, afterPage, write, partsFor, words});
})();
