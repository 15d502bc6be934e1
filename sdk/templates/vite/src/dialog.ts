// What the page asks of the plug-in and of the window; it knows no element of the page.
import { exit } from 'tovik-sdk';

export const NOT_CONNECTED = 'This page has no connection to the plug-in. Open it with tovik.';
export const NOT_SIGNED = 'The document could not be signed.';

/** Has the plug-in sign and ends the dialog with the signature, or returns what is wrong. */
export function sign(name: string): string | undefined {
  const tovik = window.Tovik;
  if (!tovik) {
    return NOT_CONNECTED;
  }
  tovik.SetProperty('Name', name);
  if (tovik.Invoke('Sign') !== 0) {
    return NOT_SIGNED;
  }
  exit('CKR_OK', tovik.GetProperty('Signature'));
}

export function cancel(): void {
  exit('CKR_CANCEL');
}
