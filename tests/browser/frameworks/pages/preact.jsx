// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

/** @jsxImportSource preact */
import {render} from 'preact';
import {useEffect, useState} from 'preact/hooks';
import {keepRepainting, know, mountAll} from './page.js';

function Form({name}) {
    const [weight, setWeight] = useState('');
    const [, setMoment] = useState(0);
    useEffect(() => keepRepainting(() => setMoment((moment) => moment + 1)), []);
    useEffect(() => {
        if (weight !== '')
            know(name, weight);
    }, [weight]);
    return <label>Preact <input name={name} value={weight}
        onInput={(event) => setWeight(event.target.value)} /> <output>{weight}</output></label>;
}

mountAll('preact', (place, name) => render(<Form name={name} />, place));
