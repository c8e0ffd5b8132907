// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// What the pages have in common. Tests read off the document what a page has come to know.

/** The page's own state of a field, at each change of it. */
export function know(name, value) {
    const {dataset} = document.documentElement;
    const known = JSON.parse(dataset.known ?? '{}');
    (known[name] ??= []).push(String(value));
    dataset.known = JSON.stringify(known);
}

/** Calls mount(element, name) for each place of the document that is meant for this framework. */
export function mountAll(framework, mount) {
    for (const place of document.querySelectorAll(`[data-framework="${framework}"]`))
        mount(place, place.dataset.name);
}

/** As a page does that shows a clock or an advertisement: it paints itself again and again. */
export function keepRepainting(repaint) {
    setInterval(repaint, 300);
}
