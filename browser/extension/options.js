// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT
'use strict';

const api = globalThis.browser ?? globalThis.chrome;
const element = (id) => document.getElementById(id);

async function showLink() {
    const {linked, program} = await api.runtime.sendMessage('link');
    const own = api.runtime.getManifest().version;
    if (linked)
        element('link').textContent = `Linked to Postal Scale ${program}.`;
    else if (program)
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

/** The user may have let us in by a pattern that names no site. */
function siteOf(origin) {
    return /^https:\/\/((?:\*\.)?[^*/]+)\//.exec(origin)?.[1] ?? origin;
}

async function showSites() {
    const {origins} = await api.permissions.getAll();
    const added = origins.filter((origin) => !ownOrigins().includes(origin));
    element('sites').replaceChildren(...added.map((origin) => {
        const item = document.createElement('li');
        const remove = document.createElement('button');
        remove.textContent = 'Remove';
        remove.addEventListener('click', async () => {
            await api.permissions.remove({origins: [origin]});
            showSites();
        });
        item.append(`${siteOf(origin)} `, remove);
        return item;
    }));
}

element('add').addEventListener('submit', async (event) => {
    event.preventDefault();
    const site = element('site').value;
    element('answer').textContent = '';
    try {
        if (!await api.permissions.request({origins: [`https://${site}/*`]}))
            element('answer').textContent = `${site} was not allowed.`;
    } catch (error) {
        element('answer').textContent = `${site} cannot be added: ${error.message}`;
    }
    showSites();
});

element('quiet').addEventListener('change', (event) => {
    api.storage.local.set({quiet: event.target.checked});
});

async function showOptions() {
    const {quiet} = await api.storage.local.get({quiet: false});
    element('quiet').checked = quiet;
}

api.runtime.onMessage.addListener((message) => {
    if (message === 'link changed')
        showLink();
});

showLink();
showOptions();
showSites();
