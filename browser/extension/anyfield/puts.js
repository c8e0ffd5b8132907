// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// What the person asks for: the weight into the field with the cursor, or from now on. The browser
// lets this extension into the page by that very deed, and into no other.
'use strict';

const putScripts = ['field.js', 'fit.js', 'signs.js', 'write.js', 'put.js']
    .map((name) => `anyfield/${name}`);
const patience = 2000; // ms; for the program
const toolbarTime = 4000;
const putItem = 'put-weight';
const alwaysItem = 'always-put-weight';

const stateWords = {
    moving: 'The weight is still moving',
    empty: 'Nothing is on the pan',
    'below zero': 'Below zero: empty the pan and press Tare',
    held: 'The weight is held: end Hold first',
    silent: 'The scale does not answer',
    'no scale': 'No scale is connected',
    unclear: 'The scale shows no weight',
    unlinked: 'Postal Scale is not running',
};

function listenForPuts() {
    const {commands, contextMenus} = fieldApi();
    contextMenus.removeAll().then(makeMenu);
    contextMenus.onClicked.addListener((info, tab) => {
        if (info.menuItemId === putItem)
            putWeight(tab, info.frameId ?? 0);
        else if (info.menuItemId === alwaysItem)
            alwaysPut(info, tab); // which must ask the browser before anything is waited for
    });
    commands.onCommand.addListener((command, tab) => {
        if (command === putItem)
            putWeight(tab);
    });
    toolbar().onClicked.addListener((tab) => putWeight(tab));
}

const toolbar = () => fieldApi().action ?? fieldApi().browserAction;

function makeMenu() {
    const {contextMenus} = fieldApi();
    for (const [id, title] of [[putItem, 'Put the weight here'],
                               [alwaysItem, 'Always put the weight here']])
        contextMenus.create({id, title, contexts: ['editable']});
}

// The weight

const fieldUnits = ['lb oz', 'lb', 'oz', 'kg', 'g'];

let asking = [];

/** With the state alone where there is none. */
function askForWeight() {
    return new Promise((resolve) => {
        asking.push(resolve);
        if (isLinked())
            send({weight: 'once'});
        setTimeout(() => {
            asking = asking.filter((each) => each !== resolve);
            resolve({state: isLinked() ? 'silent' : 'unlinked'});
        }, patience);
    });
}

/** The link has come about; this script may have been woken by the person's deed. */
function askAgain() {
    if (asking.length > 0)
        send({weight: 'once'});
}

function receiveWeight(weight) {
    if (weight.news) {
        passOnWeight(weight);
        return;
    }
    const answered = asking;
    asking = [];
    for (const answer of answered)
        answer(weight);
}

// The page

/** @param frame where the field is known to be; else all that may be entered are entered */
async function enterFrames(tab, frame) {
    const target = frame === undefined ? {tabId: tab.id, allFrames: true}
                                       : {tabId: tab.id, frameIds: [frame]};
    await fieldApi().scripting.executeScript({target, files: putScripts, injectImmediately: true});
}

async function callInFrame(tab, frame, name, argument) {
    const [{result}] = await fieldApi().scripting.executeScript({
        target: {tabId: tab.id, frameIds: [frame]}, injectImmediately: true,
        func: (method, value) =>
            globalThis[Symbol.for('org.postalscale.fields')]?.[method](value) ?? null,
        args: [name, argument]});
    return result;
}

/** The frame with the cursor; undefined where it is in one that may not be entered. */
async function frameWithCursor(tab) {
    const results = await fieldApi().scripting.executeScript({
        target: {tabId: tab.id, allFrames: true}, injectImmediately: true,
        func: () => {
            const fields = globalThis[Symbol.for('org.postalscale.fields')];
            return fields ? {hasFocus: document.hasFocus(), cursor: fields.cursor()} : null;
        }});
    const inField = results.filter(({result}) => result?.cursor === 'field');
    const focused = inField.find(({result}) => result.hasFocus) ??
                    (inField.length === 1 ? inField[0] : undefined);
    const isElsewhere = results.some(({result}) => result?.cursor === 'frame');
    return focused?.frameId ?? (isElsewhere ? undefined : 0);
}

const foreignFrame = 'This part of the page belongs to another site: right-click into the field and '
    + 'choose “Always put the weight here”';

async function putWeight(tab, frame) {
    try {
        const weight = await askForWeight();
        await enterFrames(tab, frame);
        const place = frame ?? await frameWithCursor(tab);
        if (weight.state !== 'settled')
            await sayIn(tab, place ?? 0, stateWords[weight.state] ?? stateWords.unclear);
        else if (place === undefined)
            await sayIn(tab, 0, foreignFrame);
        else
            await callInFrame(tab, place, 'put', {texts: weight.texts, unit: weight.unit});
    } catch {
        await explain(tab, 0, frame ? foreignFrame : 'The browser lets no extension into this page');
    }
}

function sayIn(tab, frame, words, trouble = true) {
    return fieldApi().scripting.executeScript({
        target: {tabId: tab.id, frameIds: [frame]}, injectImmediately: true,
        func: (text, options) =>
            globalThis[Symbol.for('org.postalscale.fields')].say(text, options),
        args: [words, {trouble}]});
}

/** Where the page itself cannot. */
function sayOnToolbar(tab, words) {
    const tabId = tab?.id;
    toolbar().setTitle({tabId, title: `Postal Scale: ${words}`});
    toolbar().setBadgeText({tabId, text: '!'});
    setTimeout(() => toolbar().setBadgeText({tabId, text: ''}), toolbarTime);
}

// From now on

/** What the browser is asked for, and nothing else is done there meanwhile. */
const askedSites = new Set();

async function alwaysPut(info, tab) {
    const frame = info.frameId ?? 0;
    const address = addressOf(info.frameUrl ?? info.pageUrl);
    if (address?.protocol !== 'https:') {
        await explain(tab, frame, 'Only a field of an encrypted page can be remembered');
        return;
    }
    const site = address.hostname;
    const permission = {origins: [`https://${site}/*`]};
    let isNewSite = false;
    askedSites.add(site);
    try {
        const before = fieldApi().permissions.contains(permission);
        // A browser asks its user only while the click is fresh: nothing may be waited for before.
        const asked = fieldApi().permissions.request(permission);
        isNewSite = !await before;
        if (!await asked)
            await explain(tab, frame, `Not remembered: the browser was told not to allow ${site}`);
        else
            await toggle({tab, frame, origin: address.origin, isNewSite});
    } catch {
        if (isNewSite && !fieldSites.has(site))
            await giveBack(site);
        await explain(tab, frame, 'The browser lets no extension into this page');
    } finally {
        askedSites.delete(site);
        refresh();
    }
}

async function explain(tab, frame, words) {
    try {
        await enterFrames(tab, frame);
        await sayIn(tab, frame, words);
    } catch {
        sayOnToolbar(tab, words);
    }
}

/** Remembers the field with the cursor, or takes that back. */
async function toggle({tab, frame, origin, isNewSite}) {
    await recipesLoaded;
    await enterFrames(tab, frame);
    const field = await callInFrame(tab, frame, 'describe', recipesOf(origin));
    if (field.known) {
        await forgetRecipe(field.known);
        await sayIn(tab, frame, 'This field follows the scale no more', false);
        return;
    }
    const recipe = field.why ? null : await recipeOf(field, origin);
    if (!recipe) {
        await sayIn(tab, frame, field.why ??
            'Not remembered: neither the field nor the scale says a unit for it');
        if (isNewSite)
            await giveBack(siteOfOrigin(origin));
        return;
    }
    await remember(recipe, isNewSite);
    await fieldApi().scripting.executeScript({
        target: {tabId: tab.id, frameIds: [frame]}, files: followScripts});
    await sayIn(tab, frame, 'This field follows the scale from now on', false);
}

/** Where the field does not say its unit, the panel's stays; null where that is none of a field's. */
async function recipeOf({signs, label, unit, isChosen}, origin) {
    const {unit: panelUnit} = unit ? {} : await askForWeight();
    const simple = panelUnit === 'lb oz' ? 'lb' : panelUnit;
    const wanted = unit ?? simple;
    return fieldUnits.includes(wanted) ? {origin, signs, label, isChosen, unit: wanted} : null;
}
