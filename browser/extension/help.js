// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// Names the key that is the user's own by now.
'use strict';

async function showKey() {
    const all = await (globalThis.browser ?? globalThis.chrome).commands.getAll();
    const {shortcut} = all.find(({name}) => name === 'put-weight');
    document.getElementById('key').textContent = shortcut || 'the key that you choose for it';
}

showKey();
