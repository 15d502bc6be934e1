// Answers with the values of the expressions in CALLS; in the place of the plug-in of the real
// bridge, the handlers do what that does. On the mock the other ways to an action come first.
function conform(mock, TovikActions) {
  if (mock) {
    const length = text => new TextEncoder().encode(text).length;
    Object.assign(mock.handlers, {
      getProperty: name => name === 'invalid' ? null : name === 'huge' ? 'x'.repeat(5e7)
          : name.startsWith('length:') ? String(length(mock.properties.get(name.slice(7)))) : undefined,
      enumProperty: (first, second) => first === 'none' ? null : first === 'echo' ? second
          : `<${first}|${second}>`,
      invoke: name => ({ 'all ones': 0xFFFFFFFF, 'long': 0x700000005 })[name] ?? length(name),
    });
    document.querySelector('b').click();
    document.forms[0].requestSubmit(document.querySelector('button'));
    if (window.navigation) {
      location.href = 'tvk://exit?status=ERR&response=x';
    }
  }
  setTimeout(() => TovikActions.exit('CKR_OK', JSON.stringify({
    values: CALLS.map(call => { try { return eval(call); } catch (error) { return error.name; } }),
    actions: mock?.actions.map(Object.values),
  })));
}
