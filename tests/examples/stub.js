// Takes the place of the plug-in and the window: `parent.trouble` says how it behaves.
const trouble = parent.trouble;
const lists = { Token: ['1'], Key: ['2'], TokenLogin: 'pin', TokenMinimum: '4', ...trouble };
let last = 0;
let busy = 2; // with a command of the page before
Object.defineProperty(navigator, 'language', { value: parent.language });
window.TovikMock = { perform: url => parent.answered(url) };
window.Tovik = trouble.bridge === false ? undefined : {
  SetProperty: () => null,
  GetProperty: name => ({ State: busy-- > 0 ? 'login' : 'done', Status: String(last), Digest: 'AAAA' })[name] || '',
  EnumProperty(name, id) {
    const found = lists[name] || '';
    return typeof found === 'string' ? found : found[found.indexOf(id) + 1] || '';
  },
  Invoke(name) {
    last = trouble[name] || 0;
    return busy > 0 ? 0x90 : 0;
  },
};
