// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// Stands between the program and the page: tells the program which page the user looks at, and
// hands what the program sends for that page to the script in it. Runs as Chromium's service
// worker, which may end whenever the program is absent, and as Firefox's background page.
'use strict';

const api = globalThis.browser ?? globalThis.chrome;

const hostName = 'org.postalscale.browser';
const protocol = 1;
const shortestRetry = 500; // ms
const longestRetry = 60000;
const timeToConnect = 1000;

const browserName = navigator.userAgent.includes('Firefox/') ? 'Firefox' : 'Chromium';

let program = null;
let programHello = null;
let retryDelay = shortestRetry;

/** Documents with a script of ours in them, by number. Each load of a page gets another number. */
const pages = new Map();
let lastPageNumber = 0;
let currentPage = null;
let lastRefresh = 0;
let nextTry = 0;
let lastFocus = 0; // ms since 1970

let sendInputEvents = false;

const isLinked = () => programHello !== null && programHello.protocol === protocol;

// The program

function connectProgram() {
    const port = api.runtime.connectNative(hostName);
    program = port;
    port.onMessage.addListener(receive);
    port.onDisconnect.addListener(() => {
        void api.runtime.lastError; // Chromium reports an error that nobody has looked at
        retryDelay = programHello ? shortestRetry : Math.min(2 * retryDelay, longestRetry);
        program = null;
        programHello = null;
        tellOptionsPage();
        setTimeout(connectProgram, retryDelay);
    });
}

function send(message) {
    program?.postMessage(message);
}

function receive(message) {
    if (message.hello)
        greet(message.hello);
    else if (message.run && isLinked())
        run(message.run);
}

function greet(hello) {
    programHello = hello;
    const version = api.runtime.getManifest().version;
    send({hello: {protocol, version, browser: browserName}});
    tellOptionsPage();
    if (!isLinked())
        return;
    send({focused: lastFocus});
    announceCurrentPage();
}

function announceCurrentPage() {
    if (!isLinked())
        return;
    const page = pages.get(currentPage);
    send({current: page ? {page: currentPage, host: page.host} : null});
}

function run({id, page: number, texts}) {
    const page = pages.get(number);
    // The user may have turned to another page while this was on its way.
    if (!page || number !== currentPage) {
        send({ran: {id, results: null}});
        return;
    }
    page.runs.add(id);
    page.port.postMessage({id, texts, inputEvents: sendInputEvents});
}

// The pages

api.runtime.onConnect.addListener((port) => {
    if (port.name !== 'page' || !port.sender?.tab)
        return;
    const tab = port.sender.tab.id;
    // A tab shows one page; what an earlier one has not answered, it never will.
    forget(pageOfTab(tab));
    const number = ++lastPageNumber;
    const page = {port, tab, host: new URL(port.sender.url).hostname, runs: new Set()};
    pages.set(number, page);
    port.onMessage.addListener(({id, results}) => {
        if (page.runs.delete(id))
            send({ran: {id, results}});
    });
    port.onDisconnect.addListener(() => {
        void api.runtime.lastError;
        forget(number);
        refresh();
    });
    refresh();
});

function forget(number) {
    const page = pages.get(number);
    if (!page)
        return;
    pages.delete(number);
    for (const id of page.runs)
        send({ran: {id, results: null}});
    page.runs.clear();
    page.port.disconnect();
}

function pageOfTab(tab) {
    for (const [number, page] of pages) {
        if (page.tab === tab)
            return number;
    }
    return null;
}

/** Finds out what the user looks at. */
async function refresh() {
    const ticket = ++lastRefresh;
    const [tab] = await api.tabs.query({active: true, lastFocusedWindow: true});
    if (ticket !== lastRefresh)
        return;
    // The address is told only where the user lets us in; a site may have been taken away again.
    const number = tab?.url ? pageOfTab(tab.id) : null;
    if (number !== currentPage) {
        currentPage = number;
        announceCurrentPage();
    }
    if (number === null && tab)
        enter(tab);
}

async function enter(tab) {
    if (!tab.url?.startsWith('http'))
        return;
    try {
        await api.scripting.executeScript(
            {target: {tabId: tab.id}, files: ['page.js'], injectImmediately: true});
        // A page that was just being left or shown again may not have noticed.
        clearTimeout(nextTry);
        nextTry = setTimeout(refresh, timeToConnect);
    } catch {
        // The page is gone again, or is one that no extension may enter.
    }
}

api.tabs.onActivated.addListener(refresh);
api.tabs.onUpdated.addListener((id, change, tab) => {
    if (change.status || change.url)
        refresh();
    // An attempt made while the page was changing may have entered the one before.
    if (change.status === 'complete' && tab.active)
        enter(tab);
});
api.tabs.onRemoved.addListener(refresh);
api.tabs.onReplaced.addListener(refresh);
api.permissions.onAdded.addListener(refresh);
api.permissions.onRemoved.addListener(refresh);

function noteFocus() {
    lastFocus = Date.now();
    if (isLinked())
        send({focused: lastFocus});
}

api.windows.onFocusChanged.addListener((window) => {
    if (window === api.windows.WINDOW_ID_NONE)
        return;
    noteFocus();
    refresh();
});

// The options page

api.storage.onChanged.addListener((changes) => {
    if (changes.inputEvents)
        sendInputEvents = changes.inputEvents.newValue === true;
});

api.runtime.onMessage.addListener((message, sender, answer) => {
    if (message === 'link')
        answer({linked: isLinked(), program: programHello?.version ?? null});
});

function tellOptionsPage() {
    api.runtime.sendMessage('link changed').catch(() => {}); // it is not open
}

async function start() {
    const stored = await api.storage.local.get({inputEvents: false});
    sendInputEvents = stored.inputEvents === true;
    const windows = await api.windows.getAll();
    if (windows.some((window) => window.focused))
        noteFocus();
    await refresh();
}

// Waking up is all that is wanted of these: the lines below do the rest.
api.runtime.onStartup.addListener(() => {});
api.runtime.onInstalled.addListener(() => {});
connectProgram();
start();
