// Typings of node/dialog.js: a dialog from Node 18 or later.

/** Width and height, or x and y: two numbers from 0 to 65535, or a text as the program reads it. */
export type Pair = readonly [number, number] | string;

/** What the dialog is to be. One that is undefined, or null in JavaScript, is left out. */
export interface DialogOptions {
    /** "tovik", found on PATH, or a path. */
    program?: string;
    /** Milliseconds to wait; for ever without it. */
    timeout?: number;
    /** Ends the dialog when it is aborted; dialog() then rejects with its reason. */
    signal?: AbortSignal;
    /** Names and values for the start page, encoded here. {} gives the page no query. Without it the
     * query of the first argument that holds "://" is used. */
    query?: Readonly<Record<string, string | number | boolean>>
        | Iterable<readonly [string, string | number | boolean]>;
    /** Handle of the window that the dialog belongs to: "x11:0x1c00007", "wayland:TOKEN", or the
     * number of an X window. */
    parent?: string | number;
    /** Start page: a file name of the user interface, a URL, or res://PATH of the plug-in. */
    url?: string | URL;
    /** Where plug-in, library, pages and icon are looked for: an absolute path that ends with "/". */
    root?: string;
    title?: string;
    /** A file, or "none". */
    icon?: string;
    /** In pixels, or percentages when both are at most 100. */
    size?: Pair;
    position?: Pair;
    fullscreen?: boolean;
    /** Lets the user resize the window. */
    resizing?: boolean;
    /** Keeps the window above others. */
    system?: boolean;
    useragent?: string;
    /** Milliseconds between the start of loading and the window. */
    wait?: number;
    plugin?: string;
    config?: string;
    /** Traces on standard error. */
    verbose?: boolean;
    /** Reports on standard error what goes wrong in the page. */
    console?: boolean;
    /** Serves the engine's inspector on a free port of 127.0.0.1, or on this one. */
    inspect?: boolean | number;
    /** Further words of the command line, such as those of one's own. */
    arguments?: Iterable<string>;
}

/** Runs a dialog to its end and resolves to the page's answer, perhaps a status such as "ERR". It
 * ends when this process ends. Rejects with one of the errors below, or the reason of the signal. */
export function dialog(options?: DialogOptions): Promise<string>;

/** The program could not be started or has failed, or gave no answer. */
export class NoAnswer extends Error {}
/** The page or the user has cancelled. */
export class Cancelled extends NoAnswer {}
/** No answer came in time; the dialog has been ended. */
export class TimedOut extends NoAnswer {}
/** The web process has crashed, often in the plug-in, and the user has closed the window. */
export class Crashed extends NoAnswer {}
/** An argument means something else to the program, or cannot be passed to it. */
export class Refused extends NoAnswer {}
