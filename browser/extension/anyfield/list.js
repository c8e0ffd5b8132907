// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// The remembered fields on the options page.
'use strict';

const seenWords = {
    found: '',
    missing: 'was not found when its page was last open: it may have become another one',
    closed: 'it is hidden or cannot be changed there',
    alike: 'another field there looks the same by now, so neither gets the weight',
};
const unitWords = {lb: 'pounds', oz: 'ounces', kg: 'kilograms', g: 'grams',
                   'lb oz': 'pounds and ounces'};

async function troubleOf({origin, seen}) {
    const site = new URL(origin).hostname;
    if (!await api.permissions.contains({origins: [`https://${site}/*`]}))
        return 'the browser does not let the extension into this site any more';
    return seenWords[seen] ?? '';
}

async function itemOf(recipe) {
    const item = document.createElement('li');
    const words = document.createElement('span');
    const name = recipe.label || recipe.signs.name || recipe.signs.id || recipe.signs.placeholder;
    const trouble = await troubleOf(recipe);
    words.textContent = `${name} on ${new URL(recipe.origin).host}, in ${unitWords[recipe.unit]}`
        + (trouble ? `: ${trouble}` : '');
    const forget = document.createElement('button');
    forget.textContent = 'Forget';
    forget.setAttribute('aria-label', `Forget ${name} on ${new URL(recipe.origin).host}`);
    forget.addEventListener('click', () => api.runtime.sendMessage({forget: recipe.id}));
    item.append(words, forget);
    return item;
}

let lastShown = 0;

async function showFields() {
    const ticket = ++lastShown;
    const {recipes} = await api.storage.local.get({recipes: []});
    const items = await Promise.all(recipes.map(itemOf));
    if (ticket !== lastShown)
        return; // there is something newer to be shown
    element('noFields').hidden = items.length > 0;
    element('fields').replaceChildren(...items);
    element('fields').removeAttribute('aria-busy');
}

api.storage.onChanged.addListener(() => {
    showFields();
    showSites();
});
showFields();
