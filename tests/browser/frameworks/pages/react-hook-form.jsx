// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

import {useEffect} from 'react';
import {createRoot} from 'react-dom/client';
import {useForm} from 'react-hook-form';
import {know, mountAll} from './page.js';

function Form({name}) {
    const {register, watch} = useForm({defaultValues: {[name]: ''}});
    const weight = watch(name);
    useEffect(() => {
        if (weight !== '')
            know(name, weight);
    }, [weight]);
    return <label>react-hook-form <input {...register(name)} /> <output>{weight}</output></label>;
}

mountAll('react-hook-form', (place, name) => createRoot(place).render(<Form name={name} />));
