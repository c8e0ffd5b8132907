// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

import jQuery from 'jquery';
import 'jquery-mask-plugin';
import {know, mountAll} from './page.js';

function addBox(place, name) {
    place.innerHTML = `<label>jQuery <input name="${name}"></label>`;
    return jQuery(place).find('input');
}

function mountWith(mount) {
    return (place, name) => {
        const box = addBox(place, name);
        mount(box);
        box.on('change', () => know(name, box.val()));
    };
}

mountAll('jquery', mountWith(() => {}));
mountAll('jquery-mask', mountWith((box) => box.mask('000.000', {reverse: true})));
mountAll('jquery-mask-two-decimals', mountWith((box) => box.mask('000.00', {reverse: true})));
// Of the keyboard's events there is none.
mountAll('jquery-keyup', (place, name) => {
    const box = addBox(place, name);
    box.on('keyup', () => know(name, box.val()));
});
