// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

import {createEffect, createSignal} from 'solid-js';
import html from 'solid-js/html';
import {render} from 'solid-js/web';
import {keepRepainting, know, mountAll} from './page.js';

function mount(place, name) {
    const [weight, setWeight] = createSignal('');
    const [moment, setMoment] = createSignal(0);
    keepRepainting(() => setMoment(moment() + 1));
    createEffect(() => {
        if (weight() !== '')
            know(name, weight());
    });
    render(() => html`<label>Solid <input name=${name} data-moment=${moment} prop:value=${weight}
        oninput=${(event) => setWeight(event.target.value)} /> <output>${weight}</output></label>`,
    place);
}

mountAll('solid', mount);
