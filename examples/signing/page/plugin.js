// The native side as the dialog sees it. A command only begins its work, which runs on a thread of
// the plug-in; meanwhile the page stays alive and asks now and then how far it is.
'use strict';

const PAUSE = 80; // ms between two questions

/** The texts of one of the plug-in's lists, from its beginning. */
function listed(name) {
  const ids = [];
  for (let id = Tovik.EnumProperty(name, ''); id !== ''; id = Tovik.EnumProperty(name, id)) {
    ids.push(id);
  }
  return ids;
}

/** Carries out a command; a promise of its status. `report` receives each step and a percentage. */
async function carryOut(command, report) {
  const refused = Tovik.Invoke(command) >>> 0;
  if (refused !== 0) {
    return refused;
  }
  for (let state; (state = Tovik.GetProperty('State')) !== 'done';) {
    report(state, Number(Tovik.GetProperty('Progress')));
    await new Promise(resolve => setTimeout(resolve, PAUSE));
  }
  return Number(Tovik.GetProperty('Status'));
}

function tokens() {
  return listed('Token').map(id => ({
    id,
    label: Tovik.EnumProperty('TokenLabel', id) || id,
    tries: Tovik.EnumProperty('TokenTries', id),
    login: Tovik.EnumProperty('TokenLogin', id),
    minimum: Number(Tovik.EnumProperty('TokenMinimum', id)),
  }));
}

function keysOf(token) {
  Tovik.SetProperty('Token', token.id);
  return listed('Key').map(id => ({
    id,
    label: Tovik.EnumProperty('KeyLabel', id) || id,
    type: Tovik.EnumProperty('KeyType', id),
  }));
}
