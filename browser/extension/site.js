// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT
'use strict';

/** What the user typed or pasted, as {site}; or what is wrong with it, as {trouble}. */
function readSite(text) {
    const address = text.trim();
    const scheme = /^([a-z][a-z0-9+.-]*):(?!\d)/i.exec(address)?.[1].toLowerCase();
    if (scheme === 'http')
        return {trouble: 'That page is not encrypted. The weight goes to https pages only.'};
    if (address === '')
        return {trouble: 'Paste the address of a page first.'};
    const url = parseAddress(scheme ? address : `https://${address}`);
    // Whoever means a machine next door, whose name has no dot, says so by the scheme.
    const names = scheme ? /^[a-z0-9_.-]+$/ : /^[a-z0-9_-]+(\.[a-z0-9_-]+)+$/;
    if (url?.protocol !== 'https:' || !names.test(url.hostname)) {
        return {trouble: 'That is not the address of a page. Open the page, and copy what stands '
            + 'in the browser’s address bar.'};
    }
    return {site: url.hostname};
}

function parseAddress(text) {
    try {
        return new URL(text);
    } catch {
        return null;
    }
}

/** @param origin as a permission names it; the user may have let us in by one without a site */
function siteOf(origin) {
    return /^https:\/\/((?:\*\.)?[^*/]+)\//.exec(origin)?.[1] ?? origin;
}

/** Whether a permission such as https://*.ups.com/* lets us into the site already. */
function covers(origin, site) {
    if (origin === '<all_urls>' || /^(?:https|\*):\/\/\*\/\*$/.test(origin))
        return true;
    const served = siteOf(origin);
    return served.startsWith('*.')
        ? `.${site}`.endsWith(served.slice(1))
        : site === served;
}
