// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

import {createApp, ref, watch} from 'vue/dist/vue.esm-bundler.js';
import {keepRepainting, know, mountAll} from './page.js';

function mountWith(model) {
    return (place, name) => createApp({
        setup() {
            const weight = ref('');
            const moment = ref(0);
            keepRepainting(() => ++moment.value);
            watch(weight, (value) => know(name, value));
            return {name, weight, moment};
        },
        template: `<label>Vue <input :name="name" ${model}="weight" :data-moment="moment">
            <output>{{weight}}</output></label>`,
    }).mount(place);
}

mountAll('vue', mountWith('v-model'));
mountAll('vue-lazy', mountWith('v-model.lazy'));
mountAll('vue-number', mountWith('v-model.number'));
