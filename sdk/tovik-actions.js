// tovik-actions.js: what a page asks of the window, as functions of the global `TovikActions`.
// `TovikActions.exit('CKR_OK', text)` does it, `TovikActions.urls.exit('CKR_OK', text)` gives the
// URL for a link. A plain script without dependencies, which can be imported as well: index.js makes
// named exports of it. tovik-actions.d.ts describes it.
'use strict';

// A constant would be hidden in the module when the script is imported.
globalThis.TovikActions = (() => {
  const query = items => items
      .filter(([, value]) => value !== undefined)
      // Half a surrogate pair has no UTF-8 form.
      .map(([name, value]) => name + '='
          + encodeURIComponent(String(value).replace(/\p{Surrogate}/gu, '\ufffd')))
      .join('&');

  function url(action, ...items) {
    const tail = query(items);
    return 'tvk://' + action + (tail && '?' + tail);
  }

  function checked(number, highest) {
    if (!Number.isInteger(number) || number < 0 || number > highest) {
      throw new RangeError(`${number} is not a whole number from 0 to ${highest}`);
    }
    return number;
  }

  const half = number => checked(number, 0xFFFF).toString(16).toUpperCase().padStart(4, '0');

  const within = (size, most) => Math.max(64, Math.min(Math.ceil(size), most));

  /** Width and height of the document where nothing stretches it to the window. */
  function sizeOfDocument(wanted) {
    const boxes = [...document.querySelectorAll(':root, body')];
    const styles = boxes.map(box => box.style.cssText);
    const laidOut = width => {
      boxes[0].style.setProperty('width', width, 'important');
      return boxes[0].getBoundingClientRect();
    };
    boxes.forEach(box => { box.style.cssText += ';height: auto !important; min-height: 0 !important'; });
    const width = within(wanted ?? laidOut('max-content').width, screen.availWidth);
    // A title bar needs its place as well.
    const height = within(laidOut(width + 'px').height, screen.availHeight - 30);
    boxes.forEach((box, index) => { box.style.cssText = styles[index]; });
    return [width, height];
  }

  const urls = {
    exit: (status, response) => url('exit', ['status', status], ['response', response]),
    // Up to three characters are a percentage; a packed pair has ten.
    resizePercent: percent => url('resize', ['status', checked(percent, 999)]),
    resizePixels: (width, height) => url('resize', ['status', '0x' + half(width) + half(height)]),
    fit: width => urls.resizePixels(...sizeOfDocument(width)),
    reload: () => url('reload'),
    restart: () => url('restart'),
    install: () => url('install'),
    uninstall: () => url('uninstall'),
  };

  function perform(address) {
    if (typeof TovikMock === 'undefined') {
      location.href = address;
    } else {
      TovikMock.perform(address);
    }
  }

  const performers = Object.fromEntries(Object.entries(urls)
      .map(([name, build]) => [name, (...values) => perform(build(...values))]));

  /** Waits for styles and images: a deferred script may run before they have loaded. */
  function fit(width) {
    if (document.readyState === 'complete') {
      performers.fit(width);
    } else {
      addEventListener('load', () => performers.fit(width), { once: true });
    }
  }

  return Object.freeze({ ...performers, fit, urls: Object.freeze(urls) });
})();
