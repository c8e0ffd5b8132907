// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// The fields that the person wants to follow the scale: kept in the browser, by the origin of their
// page, and told to no one.
'use strict';

const followScripts = ['numbers.js', ...['field.js', 'unit.js', 'fit.js', 'signs.js', 'write.js',
    'follow.js'].map((name) => `anyfield/${name}`)];
const followers = 'any-field-followers';
const toldTime = 10000; // ms; within which a page that loads itself anew is back

let recipes = [];
/** Sites that the browser lets us into for such a field alone: nothing else is done there. */
let fieldSites = new Set();

const recipesLoaded = loadRecipes();

async function loadRecipes() {
    const stored = await fieldApi().storage.local.get({recipes: [], fieldSites: []});
    recipes = stored.recipes;
    fieldSites = new Set(stored.fieldSites);
}

function fieldApi() {
    return globalThis.browser ?? globalThis.chrome;
}

function keepRecipes() {
    return fieldApi().storage.local.set({recipes, fieldSites: [...fieldSites]});
}

const siteOfOrigin = (origin) => new URL(origin).hostname;
const isRemembered = (site) => recipes.some(({origin}) => siteOfOrigin(origin) === site);
const recipesOf = (origin) => recipes.filter((recipe) => recipe.origin === origin);

/** Whether a page of this address may be entered for its remembered fields alone. */
function isFieldSite(url) {
    const site = addressOf(url)?.hostname;
    return fieldSites.has(site) || askedSites.has(site);
}

/** Such pages are entered when they are loaded, with all of their frames. */
async function enterFollowedSites() {
    const {scripting, permissions} = fieldApi();
    const {origins: allowed} = await permissions.getAll();
    const sites = new Set(recipes.map(({origin}) => siteOfOrigin(origin)));
    const matches = [...sites].map((site) => `https://${site}/*`);
    const permitted = [];
    for (const match of matches) {
        if (allowed.includes(match) || await permissions.contains({origins: [match]}))
            permitted.push(match);
    }
    const registered = await scripting.getRegisteredContentScripts({ids: [followers]});
    const script = {id: followers, matches: permitted, js: followScripts, allFrames: true,
                    runAt: 'document_idle'};
    // Never taken away for a moment: a page that is loaded right then would be passed over.
    // Nor by a list of none, which means all of them.
    if (registered.length > 0 && permitted.length === 0)
        await scripting.unregisterContentScripts({ids: [followers]});
    else if (registered.length > 0)
        await scripting.updateContentScripts([script]);
    else if (permitted.length > 0)
        await scripting.registerContentScripts([script]);
}

let sitesEntered = Promise.resolve();

function followSites() {
    sitesEntered = sitesEntered.then(() => recipesLoaded).then(enterFollowedSites).catch(() => {});
    return sitesEntered;
}

/** @param recipe none where it is kept already */
async function remember(recipe) {
    if (recipe)
        recipes.push({id: crypto.randomUUID(), seen: 'found', ...recipe});
    await keepRecipes();
    await followSites();
    tellRecipes();
}

/** At once: should this script end now, the site would count as one that the person has added. */
async function noteFieldSite(site) {
    await recipesLoaded;
    fieldSites.add(site);
    await keepRecipes();
}

/** A site that was asked for its fields alone is given back with the last of them. */
async function forgetRecipe(id) {
    await recipesLoaded;
    const origin = recipes.find((recipe) => recipe.id === id)?.origin;
    recipes = recipes.filter((recipe) => recipe.id !== id);
    const site = origin && siteOfOrigin(origin);
    const isLeft = fieldSites.has(site) && !isRemembered(site);
    await keepRecipes();
    await followSites();
    if (isLeft)
        await giveBack(site);
    tellRecipes();
}

async function giveBack(site) {
    await fieldApi().permissions.remove({origins: [`https://${site}/*`]});
    fieldSites.delete(site);
    await keepRecipes();
}

/** The person has added the site for all that carriers' pages get. */
async function serveSite(site) {
    await recipesLoaded;
    if (!fieldSites.delete(site))
        return;
    await keepRecipes();
    keepWayOpen();
    refresh();
}

// The pages with such fields

/** By port: its tab, its origin, and the recipes of the fields that are in it. */
const following = new Map();
/** By tab: what its page was told, for the one that comes of it. */
const toldOfTab = new Map();

let isSubscribed = false;

function listenForFollowers() {
    const {runtime, tabs} = fieldApi();
    runtime.onConnect.addListener(addFollower);
    tabs.onRemoved.addListener((tab) => toldOfTab.delete(tab));
    followSites();
}

function toldBefore(tab, origin) {
    const {time, told} = toldOfTab.get(tab) ?? {};
    return performance.now() - time < toldTime ? [...(told.get(origin) ?? [])] : [];
}

async function addFollower(port) {
    const {tab, origin: senderOrigin, url} = port.sender ?? {};
    if (port.name !== 'follow' || !tab)
        return;
    const origin = senderOrigin ?? new URL(url).origin;
    let isGone = false;
    port.onMessage.addListener((message) => hearFollower(message, {port, tab: tab.id, origin}));
    port.onDisconnect.addListener(() => {
        void fieldApi().runtime.lastError;
        isGone = true;
        following.delete(port);
        grantFields(tab.id, origin);
        subscribe();
    });
    await recipesLoaded;
    if (isGone)
        return;
    following.set(port, {tab: tab.id, origin, found: []});
    port.postMessage({recipes: recipesOf(origin), quiet, told: toldBefore(tab.id, origin)});
    subscribe();
}

function hearFollower({told, deed, found, seen}, {port, tab, origin}) {
    if (deed)
        toldOfTab.delete(tab);
    if (told) {
        const {told: all} = toldOfTab.get(tab) ?? {told: new Map()};
        all.set(origin, new Map([...(all.get(origin) ?? []), ...told]));
        toldOfTab.set(tab, {time: performance.now(), told: all});
    }
    if (!found || !following.has(port))
        return;
    following.get(port).found = found;
    noteSeen(new Map(seen));
    grantFields(tab, origin);
}

/** A field that is in several frames of a tab may be either: none of them gets the weight. */
function grantFields(tab, origin) {
    const frames = [...following].filter(([, page]) => page.tab === tab && page.origin === origin);
    const all = frames.flatMap(([, {found}]) => found);
    const isOnce = (id) => all.indexOf(id) === all.lastIndexOf(id);
    for (const [port, {found}] of frames)
        port.postMessage({granted: found.filter(isOnce)});
    noteSeen(new Map(all.map((id) => [id, isOnce(id) ? 'found' : 'alike'])));
}

function noteSeen(seen) {
    const news = recipes.filter((recipe) => (seen.get(recipe.id) ?? recipe.seen) !== recipe.seen);
    for (const recipe of news)
        recipe.seen = seen.get(recipe.id);
    if (news.length > 0)
        keepRecipes();
}

function tellRecipes() {
    for (const [port, {origin}] of following)
        port.postMessage({recipes: recipesOf(origin), quiet});
    subscribe();
}

const isInFront = ({tab, origin}) => tab === currentTab && recipesOf(origin).length > 0;

/** Of the program, as long as such a field is in front. */
function subscribe() {
    const isWanted = isLinked() && [...following.values()].some(isInFront);
    if (isWanted === isSubscribed)
        return;
    isSubscribed = isWanted;
    if (isLinked())
        send({weight: isWanted ? 'follow' : 'stop'});
}

function passOnWeight({texts, parcel}) {
    for (const [port, page] of following) {
        if (texts && isInFront(page))
            port.postMessage({texts, parcel});
    }
}
