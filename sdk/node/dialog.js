// Shows a Tovik dialog and gives its answer. Node 18 or later is all it needs.
//
//     import { Cancelled, dialog } from 'tovik-sdk/dialog';
//     try {
//         const name = await dialog({ url: 'index.html', title: 'Sign', timeout: 60_000 });
//     } catch (error) {
//         if (!(error instanceof Cancelled)) throw error;
//     }
import { spawn } from 'node:child_process';

const GRACE = 2000; // milliseconds between asking a dialog to end and ending it

// The options of the program: first those with a value, then the flags.
const VALUED = ['-url', '-root', '-store', '-title', '-icon', '-size', '-position', '-useragent',
    '-wait', '-plugin', '-config', '--parent'];
const FLAGS = ['-fullscreen', '-resizing', '-system', '-verbose', '--print', '--console',
    '--inspect', '--help', '--version'];
const NAMES = new Map([...VALUED, ...FLAGS].map(option => [option.replace(/^-+/, ''), option]));

// The program could not be started or has failed, or gave no answer.
export class NoAnswer extends Error {
    static { this.prototype.name = 'NoAnswer'; }
}

// The page or the user has cancelled.
export class Cancelled extends NoAnswer {
    static { this.prototype.name = 'Cancelled'; }
}

// No answer came in time; the dialog has been ended.
export class TimedOut extends NoAnswer {
    static { this.prototype.name = 'TimedOut'; }
}

// The web process has crashed, often in the plug-in, and the user has closed the window.
export class Crashed extends NoAnswer {
    static { this.prototype.name = 'Crashed'; }
}

// An argument means something else to the program, or cannot be passed to it.
export class Refused extends NoAnswer {
    static { this.prototype.name = 'Refused'; }
}

// Runs a dialog to its end and resolves to the page's answer, perhaps a status such as "ERR".
// dialog.d.ts has the options. The answer comes through a pipe, so that the dialog ends when this
// process ends, by a signal too.
//
// Rejects with Cancelled, TimedOut, Crashed, Refused, the reason of the signal or, when there is no
// answer at all, NoAnswer.
export async function dialog({ program, timeout, signal, ...options } = {}) {
    program ??= 'tovik';
    timeout ??= Infinity;
    const words = wordsOf(options);
    for (const word of [program, ...words]) {
        if (/[\0\p{Surrogate}]/u.test(word)) {
            throw new Refused(`no program accepts the argument ${JSON.stringify(word)}`);
        }
    }
    if (!(timeout >= 0)) {
        throw new Refused(`timeout is a number of milliseconds, and not ${timeout}`);
    }
    signal?.throwIfAborted();
    const { status, printed } = await run(program, words, timeout, signal);
    const text = printed.replace(/\n$/, '');
    if (status === 1 && text === 'CKR_CANCEL') {
        throw new Cancelled('cancelled');
    }
    if (status === 4) {
        throw new Crashed(`the web process of ${program} has crashed`);
    }
    if (status !== 0 || text === '') {
        throw new NoAnswer(`${program} ended with status ${status} and without an answer`);
    }
    return text;
}

// The words of the command line: the query, the named options, then the arguments.
function wordsOf({ query, arguments: others = [], ...named }) {
    const words = Object.entries(named).flatMap(([name, value]) => wordsOfOption(name, value));
    words.push(...Array.from(others, String));
    words.slice(1).forEach((value, i) => {
        const [option] = value.split('=');
        if (VALUED.includes(words[i]) && (VALUED.includes(option) || FLAGS.includes(option))) {
            throw new Refused(`the value of ${words[i]} is the option ${value}`);
        }
    });
    return (query ?? null) === null ? words : [`query://${encoded(query)}`, ...words];
}

function wordsOfOption(name, value) {
    const option = NAMES.get(name);
    if (option === undefined) {
        throw new Refused(`dialog() has no option "${name}"`);
    }
    if ((value ?? false) === false) {
        return [];
    }
    if (!VALUED.includes(option)) {
        return [value === true ? option : `${option}=${value}`];
    }
    return [option, Array.isArray(value) ? packed(name, value) : String(value)];
}

// A pair of numbers as the program reads it, "0xWWWWHHHH".
function packed(name, pair) {
    if (pair.length !== 2 || !pair.every(n => Number.isInteger(n) && n >= 0 && n <= 0xFFFF)) {
        throw new Refused(`${name} needs two numbers from 0 to 65535, and not ${pair}`);
    }
    return '0x' + pair.map(number => number.toString(16).padStart(4, '0')).join('');
}

function encoded(query) {
    const pairs = Symbol.iterator in query ? [...query] : Object.entries(query);
    try {
        const items = pairs.map(pair => pair.map(encodeURIComponent).join('='));
        return items.length === 0 ? '' : `?${items.join('&')}`;
    } catch (error) { // a lone surrogate
        throw new Refused(`the query cannot be encoded: ${error.message}`);
    }
}

// Runs the program in a process group of its own, which does not outlive the promise; resolves to
// its exit status, or the signal that has ended it, and what it has printed.
function run(program, words, timeout, signal) {
    return new Promise((resolve, reject) => {
        const parts = [];
        let failure;
        const end = error => {
            failure ??= error;
            endGroup(child);
        };
        const aborted = () => end(signal.reason);
        const child = start(program, words);
        // A longer time than timers know is no limit.
        const timer = timeout < 2 ** 31
            ? setTimeout(() => end(new TimedOut(`no answer in ${timeout} ms`)), timeout) : undefined;
        const over = settle => {
            clearTimeout(timer);
            signal?.removeEventListener('abort', aborted);
            settle();
        };
        signal?.addEventListener('abort', aborted);
        child.stdout.on('data', part => parts.push(part));
        child.on('error', error => over(() => reject(new NoAnswer(error.message))));
        child.on('close', (status, killed) => over(() => failure === undefined
            ? resolve({ status: status ?? killed, printed: Buffer.concat(parts).toString() })
            : reject(failure)));
    });
}

function start(program, words) {
    try {
        return spawn(program, ['--print', ...words],
            { detached: true, stdio: ['inherit', 'pipe', 'inherit'] });
    } catch (error) { // too many words, for instance
        throw new NoAnswer(error.message);
    }
}

// Asks the processes to end, and ends them when they do not.
function endGroup(child) {
    const kill = signal => {
        try {
            process.kill(-child.pid, signal);
        } catch { // they have ended
        }
    };
    kill('SIGTERM');
    const timer = setTimeout(kill, GRACE, 'SIGKILL');
    const ended = () => {
        clearTimeout(timer);
        child.stdout.destroy(); // another process may still hold the other end
    };
    if (child.exitCode === null && child.signalCode === null) {
        child.once('exit', ended);
    } else {
        ended();
    }
}
