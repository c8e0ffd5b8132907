// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

import {useEffect, useState} from 'react';
import {createRoot} from 'react-dom/client';
import {keepRepainting, know, mountAll} from './page.js';

function Form({name}) {
    const [weight, setWeight] = useState('');
    const [, setMoment] = useState(0);
    useEffect(() => keepRepainting(() => setMoment((moment) => moment + 1)), []);
    useEffect(() => {
        if (weight !== '')
            know(name, weight);
    }, [weight]);
    return <label>React <input name={name} value={weight}
        onChange={(event) => setWeight(event.target.value)} /> <output>{weight}</output></label>;
}

mountAll('react', (place, name) => createRoot(place).render(<Form name={name} />));
