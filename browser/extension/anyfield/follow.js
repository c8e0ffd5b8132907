// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// Keeps the fields that the person wants to follow the scale up to date. Only in pages of a site with
// such fields.
'use strict';

(() => {
    const fields = globalThis[Symbol.for('org.postalscale.fields')];
    // A second copy of this file in the same document only revives the first.
    if (fields.follow) {
        fields.follow();
        return;
    }

    const freshFor = 10000; // ms; as long as a page may take to build itself
    const shortestRetry = 1000;
    const longestRetry = 60000;

    let recipes = [];
    let quiet = false;
    let latest = null; // what came of the scale, of which settled parcel, if it has settled, and when
    let deeds = 0; // of the person in the page: what it shows after one may be another parcel's

    /** By recipe: the text that was told last, of which parcel, in which element, before which deed, and
     *  what the page made of it. */
    const told = new Map();

    // Finding the fields

    /** By recipe; as long as the page stays as it is. */
    let found = null;
    let placeOfFound = '';
    let reported = ''; // the recipes of the fields that the extension knows to be here
    /** Of these: those whose field is in no other frame of this tab, as far as the extension knows. */
    let granted = new Set();
    let watched = new WeakSet();
    const seen = new Map(); // by recipe: what the extension was told of it

    const observer = new MutationObserver(() => {
        found = null;
        writeSoon();
    });

    function watch(root) {
        if (watched.has(root))
            return;
        watched.add(root);
        observer.observe(root, {
            // A label may be reworded in place.
            childList: true, subtree: true, characterData: true,
            attributeFilter: ['id', 'name', 'type', 'placeholder', 'disabled', 'readonly', 'hidden',
                              'aria-label', 'aria-labelledby', 'for'],
        });
    }

    function findAll() {
        const place = fields.placeOfPage();
        if (found && place === placeOfFound)
            return found;
        const inputs = fields.allInputs(watch);
        placeOfFound = place;
        found = new Map(recipes.map((recipe) => [recipe.id, fields.find(recipe.signs, inputs)]));
        reportFound();
        return found;
    }

    function reportFound() {
        const ids = [...found.keys()].filter((id) => found.get(id).element);
        // That another page of the site does not have it, or hides it, is no news.
        const isElsewhere = (id) =>
            !fields.isPageOf(recipes.find((recipe) => recipe.id === id).signs);
        const news = [...found].map(([id, {why = 'found'}]) => [id, why])
            .filter(([id, why]) => seen.get(id) !== why &&
                                   !(['missing', 'closed'].includes(why) && isElsewhere(id)));
        for (const [id, why] of news)
            seen.set(id, why);
        if (news.length === 0 && ids.join() === reported)
            return;
        reported = ids.join();
        port?.postMessage({found: ids, seen: news});
    }

    let writing = 0;

    /** The field may have come only now. */
    function writeSoon() {
        if (writing !== 0 || recipes.length === 0)
            return;
        writing = setTimeout(() => {
            writing = 0;
            findAll();
            writeLatest();
        }, 100);
    }

    function writeLatest() {
        if (latest && performance.now() - latest.time < freshFor)
            writeAll((recipe) => !latest.told.has(recipe.id));
    }

    // Writing

    /** The same number is told once more only if the person has been here since, or has put on another
     *  parcel, and it is gone. What was done around a frame is not seen in it, but the parcel is. */
    function isNews(last, {element, text}) {
        if (!last)
            return !fields.isPut?.(element, text);
        if (last.text !== text)
            return true;
        // It was told while the weight was moving still.
        last.parcel ??= latest.parcel;
        if (last.deeds === deeds && last.parcel === (latest.parcel ?? last.parcel))
            return false;
        return element.value !== last.held || last.element !== element;
    }

    /** Once for each reading: what the person has typed since then stays. */
    function writeAll(isWanted = () => true) {
        for (const recipe of recipes.filter(isWanted)) {
            const {element} = findAll().get(recipe.id);
            // It may have been hidden or closed by something that is not watched.
            if (!element || !granted.has(recipe.id) || fields.whyNot(element) !== '')
                continue;
            latest.told.add(recipe.id);
            writeTo(element, recipe);
        }
    }

    const unitFor = (element, recipe) => recipe.isChosen ? recipe.unit
        : fields.pairOf(element) ? 'lb oz'
        : fields.unitOf(element) ?? (recipe.unit === 'lb oz' ? 'lb' : recipe.unit);

    function writeTo(element, recipe) {
        const unit = unitFor(element, recipe);
        const {parts, why} = fields.partsFor(element, unit, latest.texts);
        const wanted = why ? {element, text: why} : {element, text: fields.words(parts, unit)};
        if (!isNews(told.get(recipe.id), wanted))
            return;
        const entry = {...wanted, parcel: latest.parcel, deeds, held: element.value};
        told.set(recipe.id, entry);
        port?.postMessage({told: [[recipe.id, {text: wanted.text, parcel: latest.parcel}]]});
        isDeedKnown = false;
        if (why)
            return fields.say(`${why} (${unit})`, {trouble: true});
        fields.write(parts, {quiet});
        fields.afterPage(() => {
            entry.held = element.value;
            fields.sayOutcome(parts, wanted.text);
        });
    }

    // The way to the scale

    let port = null;
    let left = false;
    let retryDelay = shortestRetry;
    let isDeedKnown = false; // to the extension, since the page was last told

    function takeRecipes(message) {
        recipes = message.recipes;
        quiet = message.quiet;
        found = null;
        reported = '';
        // What the page that loaded itself anew was told; one that was kept knows better.
        if (told.size === 0) {
            for (const [id, last] of message.told ?? [])
                told.set(id, {...last, element: null, deeds: 0, held: null});
        }
        if (recipes.length === 0) {
            observer.disconnect();
            watched = new WeakSet();
            return;
        }
        watch(document);
        findAll();
    }

    function connect() {
        if (port || left)
            return;
        const opened = globalThis.chrome.runtime.connect({name: 'follow'});
        port = opened;
        opened.onMessage.addListener((message) => {
            retryDelay = shortestRetry;
            if (message.recipes)
                takeRecipes(message);
            if (message.granted) {
                granted = new Set(message.granted);
                writeLatest();
            }
            if (message.texts && recipes.length > 0) {
                const {texts, parcel} = message;
                latest = {texts, parcel, time: performance.now(), told: new Set()};
                writeAll();
            }
        });
        opened.onDisconnect.addListener(() => {
            if (port !== opened)
                return;
            port = null;
            setTimeout(connect, retryDelay); // the extension's worker ends when it has nothing to do
            retryDelay = Math.min(2 * retryDelay, longestRetry);
        });
    }

    function noteDeed(event) {
        if (!event.isTrusted)
            return;
        ++deeds;
        if (isDeedKnown || !port)
            return;
        isDeedKnown = true;
        port.postMessage({deed: true});
    }

    function leave(event) {
        if (!event.isTrusted)
            return;
        left = true;
        const leaving = port;
        port = null;
        leaving?.disconnect();
    }

    function enter(event) {
        left = false;
        if (event.persisted) {
            const dead = port;
            port = null;
            dead?.disconnect();
        }
        connect();
    }

    fields.follow = connect;
    // A page that is left may be kept, and shown again as it was.
    addEventListener('pagehide', leave, {capture: true});
    addEventListener('pageshow', enter, {capture: true});
    for (const deed of ['pointerdown', 'keydown', 'click', 'input'])
        addEventListener(deed, noteDeed, {capture: true, passive: true});
    connect();
})();
