// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

import {mount} from 'svelte';
import Form from './Form.svelte';
import {mountAll} from './page.js';

mountAll('svelte', (place, name) => mount(Form, {target: place, props: {name}}));
