// index.js: the actions of tovik-actions.js as a module.
//     import { exit } from 'tovik-sdk';        with npm and a bundler
//     import { exit } from './sdk/index.js';   in a browser
import './tovik-actions.js';

export const {
  exit, resizePercent, resizePixels, fit, reload, restart, install, uninstall, urls,
} = globalThis.TovikActions;
