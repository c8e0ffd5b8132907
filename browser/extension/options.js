// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT
'use strict';

const api = globalThis.browser ?? globalThis.chrome;
const element = (id) => document.getElementById(id);

let origins = []; // where the user lets us in, as last shown

async function showLink() {
    const {linked, program} = await api.runtime.sendMessage('link');
    const own = api.runtime.getManifest().version;
    const unfit = !linked && program;
    element('link').className = linked ? 'linked' : unfit ? 'unfit' : '';
    if (linked)
        element('link').textContent = `Linked to Postal Scale ${program}.`;
    else if (unfit)
        element('link').textContent =
            `Postal Scale ${program} and this extension, ${own}, do not fit each other.`;
    else
        element('link').textContent = 'Postal Scale is not running, or not linked to this browser.';
}

/** Sites that come with the extension cannot be taken away one by one. */
function ownOrigins() {
    const manifest = api.runtime.getManifest();
    return [...(manifest.host_permissions ?? []), ...manifest.permissions];
}

async function showSites() {
    const {fieldSites} = await api.storage.local.get({fieldSites: []});
    ({origins} = await api.permissions.getAll());
    // Those that are there for a remembered field alone are served no further.
    origins = origins.filter((origin) => !fieldSites.includes(siteOf(origin)));
    const added = origins.filter((origin) => !ownOrigins().includes(origin));
    element('sites').replaceChildren(...added.map((origin) => {
        const item = document.createElement('li');
        const remove = document.createElement('button');
        remove.textContent = 'Remove';
        remove.setAttribute('aria-label', `Remove ${siteOf(origin)}`);
        remove.addEventListener('click', async () => {
            await api.permissions.remove({origins: [origin]});
            answer('');
            showSites();
        });
        item.append(siteOf(origin), remove);
        return item;
    }));
}

function answer(text, {trouble = false} = {}) {
    element('answer').textContent = text;
    element('answer').className = trouble ? 'trouble' : '';
}

/** Asks the browser, and the browser the user; it must be asked while the click is still fresh. */
async function add(site) {
    try {
        if (!await api.permissions.request({origins: [`https://${site}/*`]})) {
            answer(`The browser was told not to allow ${site}. To change your mind, press Add again.`,
                   {trouble: true});
            return;
        }
    } catch {
        answer(`The browser lets no extension into ${site}.`, {trouble: true});
        return;
    }
    await api.runtime.sendMessage({serve: site});
    element('site').value = '';
    answer(`The weight goes to ${site} too.`);
    showSites();
}

element('add').addEventListener('submit', (event) => {
    event.preventDefault();
    const {site, trouble} = readSite(element('site').value);
    if (trouble) {
        answer(trouble, {trouble: true});
    } else if (origins.some((origin) => covers(origin, site))) {
        element('site').value = '';
        answer(`The weight goes to ${site} already.`);
    } else {
        add(site);
    }
});

element('quiet').addEventListener('change', (event) => {
    api.storage.local.set({quiet: event.target.checked});
});

async function showOptions() {
    const {quiet} = await api.storage.local.get({quiet: false});
    element('quiet').checked = quiet;
}

async function showPrivateWindows() {
    // Chromium switches off what is not from its store when this changes, until it is started anew.
    const where = navigator.userAgent.includes('Firefox/')
        ? 'open about:addons: Postal Scale, “Run in Private Windows”.'
        : 'open chrome://extensions: Postal Scale, “Details”, “Allow in Incognito”. '
            + 'Then start the browser anew.';
    element('private').textContent = await api.extension.isAllowedIncognitoAccess()
        ? `The weight goes to private windows as well. To end that, ${where}`
        : 'The weight does not go to private windows. While one is in front, the page behind it may '
            + `still get the weight. To let it into private windows, ${where}`;
}

api.runtime.onMessage.addListener((message) => {
    if (message === 'link changed')
        showLink();
});

showLink();
showOptions();
showSites();
showPrivateWindows();
