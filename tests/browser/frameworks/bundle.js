// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// Makes the scripts of the framework pages: bundle.js NODE_MODULES FOLDER
import {createRequire} from 'node:module';
import {readFile, readdir} from 'node:fs/promises';
import path from 'node:path';
import {fileURLToPath} from 'node:url';

const [modules, folder] = process.argv.slice(2).map((name) => path.resolve(name));
const pages = path.join(path.dirname(fileURLToPath(import.meta.url)), 'pages');
const require = createRequire(path.join(modules, 'here.js'));
const esbuild = require('esbuild');
const {compile} = require('svelte/compiler');

const svelte = {
    name: 'svelte',
    setup(build) {
        build.onLoad({filter: /\.svelte$/}, async ({path: filename}) => {
            const source = await readFile(filename, 'utf-8');
            return {contents: compile(source, {filename, generate: 'client'}).js.code,
                    resolveDir: pages};
        });
    },
};

const shared = 'page.js';
await esbuild.build({
    entryPoints: (await readdir(pages))
        .filter((name) => /\.[jt]sx?$/.test(name) && name !== shared)
        .map((name) => path.join(pages, name)),
    outdir: folder,
    bundle: true,
    minify: true,
    format: 'iife',
    conditions: ['browser', 'production'],
    mainFields: ['browser', 'module', 'main'],
    nodePaths: [modules],
    plugins: [svelte],
    jsx: 'automatic',
    tsconfigRaw: {compilerOptions: {experimentalDecorators: true, useDefineForClassFields: false}},
    define: {
        'process.env.NODE_ENV': '"production"',
        __VUE_OPTIONS_API__: 'true',
        __VUE_PROD_DEVTOOLS__: 'false',
        __VUE_PROD_HYDRATION_MISMATCH_DETAILS__: 'false',
        ngDevMode: 'false',
        ngJitMode: 'true',
    },
    logLevel: 'warning',
});
