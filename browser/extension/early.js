// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// Chromium makes the object of the extension's own functions when a script first enters a page, and
// leaves it out if a frame of the page has taken its name by then. This one enters before there are
// any, and leaves the rest to page.js.
'use strict';

void globalThis.chrome;
