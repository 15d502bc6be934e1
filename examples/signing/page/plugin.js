// The native side as the dialog sees it. A command only begins its work, which runs on a thread of
// the plug-in; meanwhile the page stays alive and asks now and then how far it is.
'use strict';

/** Names of the statuses that the dialog knows, which are also its answers to the caller. */
const STATUSES = {
  0x01: 'CKR_CANCEL',
  0x20: 'CKR_DATA_INVALID',
  0x32: 'CKR_DEVICE_REMOVED',
  0x50: 'CKR_FUNCTION_CANCELED',
  0x60: 'CKR_KEY_HANDLE_INVALID',
  0x68: 'CKR_KEY_FUNCTION_NOT_PERMITTED',
  0x70: 'CKR_MECHANISM_INVALID',
  0xA0: 'CKR_PIN_INCORRECT',
  0xA1: 'CKR_PIN_INVALID',
  0xA2: 'CKR_PIN_LEN_RANGE',
  0xA3: 'CKR_PIN_EXPIRED',
  0xA4: 'CKR_PIN_LOCKED',
  0xE0: 'CKR_TOKEN_NOT_PRESENT',
  0xE1: 'CKR_TOKEN_NOT_RECOGNIZED',
  0x102: 'CKR_USER_PIN_NOT_INITIALIZED',
  0x1C2: 'CKR_LIBRARY_LOAD_FAILED',
};

const PAUSE = 80; // ms between two questions

/** The texts of one of the plug-in's lists, from its beginning. */
function listed(name) {
  const ids = [];
  for (let id = Tovik.EnumProperty(name, ''); id !== ''; id = Tovik.EnumProperty(name, id)) {
    ids.push(id);
  }
  return ids;
}

/** Waits until no command runs. `report` receives each step and a percentage. */
async function rest(report) {
  for (let state; !['idle', 'done'].includes(state = Tovik.GetProperty('State'));) {
    report(state, Number(Tovik.GetProperty('Progress')));
    await new Promise(resolve => setTimeout(resolve, PAUSE));
  }
}

/** Carries out a command; a promise of its status. */
async function carryOut(command, report) {
  await rest(report); // a page that is loaded again may find its last command running
  const refused = Tovik.Invoke(command) >>> 0;
  if (refused !== 0) {
    return refused;
  }
  await rest(report);
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
