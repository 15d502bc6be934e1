// How the measuring pages time calls and end their runs.

/// Ends the run; the answer reaches the driver as JSON.
function leave(answer) {
    const response = encodeURIComponent(JSON.stringify(answer));
    location.href = `tvk://exit?status=CKR_OK&response=${response}`;
}

onerror = message => leave({error: String(message)});
onunhandledrejection = event => leave({error: String(event.reason)});

/// The numbers of the page's query item `name`, which are separated by commas.
function numbers(name) {
    return new URLSearchParams(location.search).get(name).split(',').map(Number);
}

/// A function that carries out `source` a number of times, compiled on its own so that what the
/// engine learns of one contestant does not help or hinder another.
function loop(source) {
    return new Function('count', 'text', `for (let i = 0; i < count; ++i) { ${source}; }`);
}

/// Duration of `count` rounds in milliseconds.
function duration(run, count, text) {
    const start = performance.now();
    run(count, text);
    return performance.now() - start;
}

/// A number of rounds, at least one, that last about `milliseconds`.
function lasting(milliseconds, run, text) {
    let count = 1;
    while (duration(run, count, text) < milliseconds) {
        count *= 2;
    }
    return count;
}

/// Nanoseconds of one call of each named source, in each of `rounds` rounds of about `milliseconds`.
/// The sources run in turn.
function compare(sources, rounds, milliseconds, text) {
    const contestants = Object.entries(sources).map(([name, source]) => {
        const run = loop(source);
        return {name, run, count: lasting(milliseconds, run, text), times: []};
    });
    for (let round = 0; round < rounds; ++round) {
        for (const {run, count, times} of contestants) {
            times.push(duration(run, count, text) / count * 1e6);
        }
    }
    return Object.fromEntries(contestants.map(({name, times}) => [name, times]));
}

/// The plug-in answers every command with this status.
function needPlugin() {
    if (Tovik.Invoke('name') !== 7) {
        throw new Error('the plug-in is missing');
    }
}
