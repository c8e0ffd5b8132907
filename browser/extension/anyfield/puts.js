// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// What the person asks for: the weight into a field, now or from now on. The browser lets this
// extension into the page by that very deed, and into no other.
'use strict';

const putScripts = ['numbers.js', ...['field.js', 'unit.js', 'fit.js', 'signs.js', 'write.js', 'text.js',
    'put.js', 'aim.js'].map((name) => `anyfield/${name}`)];
const linkPatience = 2000; // ms; for the program, which may not run
const answerPatience = 5000; // for its answer
const entryPatience = 500; // for a page that is yet to hear whom the deed lets in
const entryPause = 20;
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
    const {commands} = fieldApi();
    menus().removeAll().then(makeMenu);
    menus().onClicked.addListener((info, tab) => {
        if (info.menuItemId === putItem)
            putWeight(tab, clickOf(info));
        else if (info.menuItemId === alwaysItem)
            alwaysPut(info, tab); // which must ask the browser before anything is waited for
    });
    commands.onCommand.addListener((command, tab) => {
        if (command === putItem)
            putWeight(tab);
    });
    toolbar().onClicked.addListener((tab) => putWeight(tab));
}

/** Where the menu was opened. */
const clickOf = ({frameId, targetElementId}) => ({frame: frameId ?? 0, handle: targetElementId});

const toolbar = () => fieldApi().action ?? fieldApi().browserAction;

const menus = () => fieldApi().menus ?? fieldApi().contextMenus;

function makeMenu() {
    for (const [id, title] of [[putItem, 'Put the weight here'],
                               [alwaysItem, 'Always put the weight here']])
        menus().create({id, title, contexts: ['editable']});
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
        const giveUp = (state) => {
            asking = asking.filter((each) => each !== resolve);
            resolve({state});
        };
        setTimeout(() => isLinked() || giveUp('unlinked'), linkPatience);
        setTimeout(() => giveUp('silent'), answerPatience);
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

/** In all frames that may be entered, or in the one that is known. By frame: what a deed is meant for
 *  if it is meant for that frame, as fields.aim() returns it. */
async function aim(tab, frame) {
    const target = frame === undefined ? {tabId: tab.id, allFrames: true}
                                       : {tabId: tab.id, frameIds: [frame]};
    const aims = await enterByDeed({target, files: putScripts, injectImmediately: true});
    return aims.filter(({result}) => result);
}

/** Where Chromium is busy, what is to be done in the page can be there before the page knows that it may
 *  be: it is refused then, and for good where nobody comes again. */
async function enterByDeed(injection) {
    for (const start = performance.now();;) {
        try {
            return await fieldApi().scripting.executeScript(injection);
        } catch (error) {
            if (performance.now() - start > entryPatience)
                throw error;
        }
        await new Promise((resolve) => setTimeout(resolve, entryPause));
    }
}

async function callInFrame(tab, frame, name, argument) {
    const [{result}] = await fieldApi().scripting.executeScript({
        target: {tabId: tab.id, frameIds: [frame]}, injectImmediately: true,
        func: (method, value) =>
            globalThis[Symbol.for('org.postalscale.fields')]?.[method]?.(value) ?? null,
        args: [name, argument]});
    return result;
}

/** Of those that were entered; undefined where the cursor is in one that may not be. Those around it
 *  have the focus as well; a frame beside it only remembers where its cursor was. */
function frameWithCursor(aims) {
    const inside = aims.filter(({result}) => result.cursor !== 'frame');
    const isInPage = aims.some(({result}) => result.hasFocus);
    return inside.find(({result}) => isInPage ? result.hasFocus : result.isReached);
}

const foreignFrame = 'This part of the page belongs to another site: right-click into the field and '
    + 'choose “Always put the weight here”';
const closedPage = 'The browser lets no extension into this page';
const otherPage = 'This page has become another one: try again';

/** @param click none where the deed was none of a menu */
async function putWeight(tab, click) {
    let aims = null;
    try {
        // Before all else: the person goes on to the next field meanwhile.
        aims = await aim(tab, click?.frame);
        const place = click ? aims[0] : frameWithCursor(aims);
        const weight = await askForWeight();
        if (weight.state !== 'settled')
            await explain(tab, place?.frameId ?? 0, stateWords[weight.state] ?? stateWords.unclear);
        else if (!place)
            await sayIn(tab, 0, foreignFrame);
        else if (!await putAt(tab, place, click, weight))
            await explain(tab, 0, otherPage);
    } catch {
        await explain(tab, 0, aims ? otherPage : click?.frame ? foreignFrame : closedPage);
    }
}

/** @returns whether the page is there still */
function putAt(tab, {frameId, result: {id}}, click, {texts, unit}) {
    return callInFrame(tab, frameId, 'put', {deed: {id, menu: click}, texts, unit});
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
    const {action, browser_action: olderAction} = fieldApi().runtime.getManifest();
    setTimeout(() => {
        toolbar().setTitle({tabId, title: (action ?? olderAction).default_title});
        toolbar().setBadgeText({tabId, text: ''});
    }, toolbarTime);
}

// From now on

/** What the browser is asked for, and nothing else is done there meanwhile. */
const askedSites = new Set();

async function alwaysPut(info, tab) {
    const click = clickOf(info);
    const address = addressOf(info.frameUrl ?? info.pageUrl);
    if (address?.protocol !== 'https:') {
        await explain(tab, click.frame, 'Only a field of an encrypted page can be remembered');
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
        const aimed = aim(tab, click.frame).catch(() => null);
        isNewSite = !await before;
        if (!await asked) {
            await explain(tab, click.frame, `Not remembered: the browser was told not to allow ${site}`);
            return;
        }
        if (isNewSite)
            await noteFieldSite(site);
        await toggle({tab, click, origin: address.origin, isNewSite, aimed: await aimed});
    } catch {
        if (isNewSite && !isRemembered(site))
            await giveBack(site);
        await explain(tab, click.frame, closedPage);
    } finally {
        askedSites.delete(site);
        refresh();
    }
}

async function explain(tab, frame, words) {
    try {
        await aim(tab, frame);
        await sayIn(tab, frame, words);
    } catch {
        sayOnToolbar(tab, words);
    }
}

/** Remembers the field, or takes that back.
 *  @param aimed null where its frame could not be entered before the browser's question */
async function toggle({tab, click, origin, isNewSite, aimed}) {
    await recipesLoaded;
    const {frame} = click;
    const [{result}] = aimed ?? await aim(tab, frame);
    const deed = {id: result.id, menu: {...click, wasAsked: isNewSite}};
    const field = await callInFrame(tab, frame, 'describe', {deed, recipes: recipesOf(origin)}) ??
                  {why: otherPage};
    if (field.known && !isNewSite) {
        await forgetRecipe(field.known);
        await sayIn(tab, frame, 'This field follows the scale no more', false);
        return;
    }
    // One that is known has lost its site in the browser's own settings, and has it again.
    const {recipe, why} = field.why || field.known ? field : await recipeOf(field, {tab, frame, origin});
    if (why) {
        await explain(tab, frame, why);
        if (isNewSite && !isRemembered(siteOfOrigin(origin)))
            await giveBack(siteOfOrigin(origin));
        return;
    }
    await remember(recipe);
    await fieldApi().scripting.executeScript({
        target: {tabId: tab.id, frameIds: [frame]}, files: followScripts});
    await sayIn(tab, frame, 'This field follows the scale from now on', false);
}

/** @returns {recipe} or {why} not */
async function recipeOf({signs, label, unit, isChosen}, {tab, frame, origin}) {
    if (await isInAnotherFrame(signs, {tab, frame, origin}))
        return {why: 'Another field here looks the same, so neither can be remembered'};
    // Where the field does not say its unit, the panel's stays.
    const {unit: panelUnit} = unit ? {} : await askForWeight();
    const wanted = unit ?? (panelUnit === 'lb oz' ? 'lb' : panelUnit);
    return fieldUnits.includes(wanted)
        ? {recipe: {origin, signs, label, isChosen, unit: wanted}}
        : {why: 'Not remembered: neither the field nor the scale says a unit for it'};
}

async function isInAnotherFrame(signs, {tab, frame, origin}) {
    await aim(tab);
    const results = await fieldApi().scripting.executeScript({
        target: {tabId: tab.id, allFrames: true}, injectImmediately: true,
        func: (wanted, place) => {
            const fields = globalThis[Symbol.for('org.postalscale.fields')];
            const {element, why} = fields?.find(wanted, fields.allInputs()) ?? {};
            return location.origin === place && (Boolean(element) || why === 'alike');
        },
        args: [signs, origin]});
    return results.some(({frameId, result}) => frameId !== frame && result);
}
