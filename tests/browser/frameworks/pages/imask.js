// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

import IMask from 'imask';
import {know, mountAll} from './page.js';

function mountWith(mask) {
    return (place, name) => {
        place.innerHTML = `<label>IMask <input name="${name}"></label>`;
        const masked = IMask(place.querySelector('input'), mask);
        masked.on('accept', () => know(name, masked.value));
    };
}

mountAll('imask-number', mountWith({mask: Number, scale: 3, radix: '.', min: 0, max: 150}));
mountAll('imask-pattern', mountWith({mask: '000.00'}));
