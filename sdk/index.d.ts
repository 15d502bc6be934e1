// index.d.ts: typings of the module "tovik-sdk"; with it come those of the global object `Tovik`.
/// <reference path="./tovik.d.ts" />
/// <reference path="./tovik-actions.d.ts" />

export const exit: typeof TovikActions.exit;
export const resizePercent: typeof TovikActions.resizePercent;
export const resizePixels: typeof TovikActions.resizePixels;
export const fit: typeof TovikActions.fit;
export const reload: typeof TovikActions.reload;
export const restart: typeof TovikActions.restart;
export const install: typeof TovikActions.install;
export const uninstall: typeof TovikActions.uninstall;
export const urls: typeof TovikActions.urls;
