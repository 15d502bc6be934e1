// ConsoleScript.h: the script by which "--console" sees exceptions and the calls of console.
#pragma once

/// Runs in every frame before the scripts of the page, and keeps the functions that it uses: the
/// page may replace them. Posts "WHAT FILE:LINE:COLUMN: TEXT" to the handler tovikConsole.
constexpr char kConsoleScript[] = R"script((() => {
'use strict';
const handler = window.webkit.messageHandlers.tovikConsole;
const post = handler.postMessage.bind(handler);
const {apply} = Reflect;
const {stringify} = JSON;
const {split, includes, slice} = String.prototype;
const textOf = String;
const ErrorType = Error;
const kLongest = 2000;

function show(value) {
    try {
        if (typeof value !== 'object' || value === null || value instanceof ErrorType) {
            return textOf(value);
        }
        const text = stringify(value);
        return text === undefined || text === '{}' ? textOf(value) : text;
    } catch {
        return '(a value without a text)';
    }
}

// The place of the first call of the page in a stack: each line is FUNCTION@FILE:LINE:COLUMN.
function place(stack, first) {
    const lines = typeof stack === 'string' ? apply(split, stack, ['\n']) : [];
    for (let i = first; i < lines.length; ++i) {
        const parts = apply(split, lines[i], ['@']);
        const file = parts[parts.length - 1];
        if (apply(includes, file, [':'])) {
            return file;
        }
    }
    return location.href;
}

function report(what, where, text) {
    post(apply(slice, `${what} ${where}: ${text}`, [0, kLongest]));
}

function watch(name) {
    console[name] = new Proxy(console[name], {apply(target, self, values) {
        const failed = name === 'assert';
        if (!failed || !values[0]) {
            let text = '';
            for (let i = failed ? 1 : 0; i < values.length; ++i) {
                text += (text === '' ? '' : ' ') + show(values[i]);
            }
            report(`console.${name}`, place(new ErrorType().stack, 1), text);
        }
        return apply(target, self, values);
    }});
}

const names = ['debug', 'log', 'info', 'warn', 'error', 'trace', 'dir', 'table', 'assert'];
for (let i = 0; i < names.length; ++i) {
    watch(names[i]);
}

addEventListener('error', event => {
    if (event.target === window && event.message !== undefined) {
        report('exception', `${event.filename}:${event.lineno}:${event.colno}`, event.message);
    }
}, true);

addEventListener('unhandledrejection', event => {
    const {reason} = event;
    report('rejection', place(reason?.stack, 0), show(reason));
}, true);
})();)script";
