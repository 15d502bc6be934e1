// tovik-mock.js: replaces the bridge and the window while a page is written in an ordinary browser.
// Load it before every other script. It does nothing when the real `Tovik` exists; leave it out of
// what is delivered all the same. tovik-mock.d.ts describes it.
//
//     if (window.TovikMock) { TovikMock.handlers.invoke = name => name === 'Sign' ? 0 : 6; }
//
// Actions come from TovikActions, and from links, forms and, where the browser has the
// Navigation API, assignments to location. Frames, window.open and <meta> refreshes escape.
'use strict';

if (!window.Tovik) {
  (() => {
    const FUNCTION_FAILED = 0x06;
    const FUNCTION_NOT_SUPPORTED = 0x54;

    const properties = new Map();
    const handlers = {};
    const actions = [];
    let answer = null;

    // ---- The bridge ----

    /** A text as far as a NUL-terminated one reaches. */
    const cut = text => text.split('\0', 1)[0];

    function textOfNumber(number) {
      if (!(Math.abs(number) < 2 ** 63)) {
        return '';
      }
      const digits = BigInt(Math.trunc(number)).toString();
      if (digits.startsWith('-')) {
        return digits.length <= 14 ? digits : '';
      }
      return digits.slice(-15);
    }

    /** The text that the plug-in receives; null for a value that is refused. */
    function textOf(value) {
      if (typeof value === 'string') {
        // Half a surrogate pair, which has no UTF-8 form, ends a text as well.
        return cut(value).split(/\p{Surrogate}/u, 1)[0];
      }
      return typeof value === 'number' ? textOfNumber(value) : null;
    }

    /** Calls the handler with all arguments as texts, unless one of them is refused. */
    function call(handler, fallback, failure, ...values) {
      const texts = values.map(textOf);
      if (texts.includes(null)) {
        return failure;
      }
      try {
        return (handlers[handler] || (() => undefined))(...texts) ?? fallback(...texts);
      } catch (error) {
        console.error(`The handler ${handler} threw, which would end the real page:`, error);
        return handler === 'invoke' ? FUNCTION_FAILED : failure;
      }
    }

    function notSupported(name) {
      console.warn(`No handler for the command "${name}".`);
      return FUNCTION_NOT_SUPPORTED;
    }

    const functions = {
      GetProperty(name) {
        return cut(String(call('getProperty', key => properties.get(key) ?? '', '', name)));
      },
      SetProperty(name, value) {
        const [key, text] = [textOf(name), textOf(value)];
        if (key !== null && text !== null) {
          properties.set(key, text);
          call('setProperty', () => null, null, key, text);
        }
        return null;
      },
      EnumProperty(first, second) {
        return cut(String(call('enumProperty', () => '', '', first, second)));
      },
      Invoke(name) {
        return call('invoke', notSupported, 0, name) | 0;
      },
    };
    Object.defineProperty(functions, Symbol.toStringTag, { value: 'Tovik' });
    window.Tovik = Object.create(functions);

    // ---- The actions ----

    /** Decodes "+" and "%" as the window does; a broken "%" stays. */
    function decoded(text) {
      const bytes = unescape(encodeURIComponent(text)).replace(/\+/g, ' ')
          .replace(/%([0-9a-f]{2})/gi, (_, digits) => String.fromCharCode(parseInt(digits, 16)));
      return new TextDecoder().decode(Uint8Array.from(cut(bytes), c => c.charCodeAt(0)));
    }

    function item(url, name) {
      const found = url.slice(url.indexOf('?') + 1).split('&')
          .find(part => part.startsWith(name + '='));
      return found === undefined ? null : decoded(found.slice(name.length + 1));
    }

    function end(status, response) {
      const success = status === 'OK' || status === 'CKR_OK';
      answer = (success && response) || status || 'CKR_CANCEL';
      show('answer: ' + answer);
    }

    const performers = {
      exit: end,
      resize: status => show('resize: ' + resizeText(status || '')),
      reload: () => location.reload(),
      restart: () => location.reload(),
      install: () => show('install: the script runs'),
      uninstall: () => end('', ''),
    };

    function resizeText(status) {
      const number = /^0x/.test(status) ? parseInt(status, 16) : parseInt(status, 10) || 0;
      return status.length <= 3 ? number + ' %' : `${number >>> 16} x ${number & 0xFFFF} pixels`;
    }

    function perform(url) {
      const name = url.slice(url.indexOf('://') + 3).split('?', 1)[0];
      if (name !== '') {
        const action = { name, status: item(url, 'status'), response: item(url, 'response') };
        actions.push(action);
        console.info('Tovik action', action);
        if (Object.hasOwn(performers, name)) {
          performers[name](action.status, action.response);
        }
      }
    }

    /** Shows a line at the foot of the page, above everything. */
    function show(text) {
      let line = document.getElementById('tovik-mock');
      if (!line) {
        line = document.createElement('output');
        line.id = 'tovik-mock';
        line.style.cssText = 'position: fixed; inset: auto 0 0 0; z-index: 2147483647;'
            + 'padding: 8px; font: 14px monospace; white-space: pre-wrap; color: #fff;'
            + 'background: #1e293b';
        document.documentElement.append(line);
      }
      line.textContent = text;
    }

    // ---- What leads to an action ----

    const isAction = url => /^tvk:\/\//i.test(url);

    /** Performs the action that the event's URL names, instead of what the event would do. */
    function catchAction(event, url) {
      if (!event.defaultPrevented && isAction(url)) {
        event.preventDefault();
        perform(url);
      }
    }

    function urlOfForm(form, submitter) {
      const action = submitter?.getAttribute('formaction') ?? form.getAttribute('action') ?? '';
      if (form.method !== 'get') {
        return action;
      }
      const data = new FormData(form);
      if (submitter?.name) {
        data.append(submitter.name, submitter.value);
      }
      return action.split('?', 1)[0] + '?' + new URLSearchParams(data);
    }

    addEventListener('click', event => catchAction(event, event.target.closest?.('a')?.href ?? ''));
    addEventListener('submit', event => catchAction(event, urlOfForm(event.target, event.submitter)));
    window.navigation?.addEventListener('navigate', event => catchAction(event, event.destination.url));

    window.TovikMock = {
      properties, handlers, actions, perform, get answer() { return answer; },
    };
  })();
}
