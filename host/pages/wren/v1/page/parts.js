/**
 * The page's parts, each added by the file of its name. These files are classic scripts in one order, the one of
 * `index.html`: a browser refuses to load a module from a disk, where hosts keep this page.
 */
"use strict";

const wrenPage = {};
