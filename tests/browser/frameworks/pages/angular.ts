// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

import 'zone.js';
import '@angular/compiler';
import {Component} from '@angular/core';
import {FormControl, ReactiveFormsModule} from '@angular/forms';
import {createApplication} from '@angular/platform-browser';
import {keepRepainting, know, mountAll} from './page.js';

function formNamed(name: string) {
    @Component({
        selector: 'parcel-form',
        imports: [ReactiveFormsModule],
        template: `<label>Angular <input name="${name}" [formControl]="weight"
            [attr.data-moment]="moment"> <output>{{weight.value}}</output></label>`,
    })
    class Form {
        weight = new FormControl('');
        moment = 0;

        constructor() {
            keepRepainting(() => ++this.moment);
            this.weight.valueChanges.subscribe((value) => know(name, value));
        }
    }
    return Form;
}

mountAll('angular', async (place: HTMLElement, name: string) => {
    const application = await createApplication();
    application.bootstrap(formNamed(name), place);
});
