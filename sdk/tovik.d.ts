// tovik.d.ts: the global object of every page that Tovik shows, for TypeScript and editors.
// A global script: name it in "files" of tsconfig.json, or write
//     /// <reference path="tovik.d.ts" />

/**
 * The bridge to the plug-in. Each call returns when the plug-in has answered, and none throws: a
 * missing or refused argument and a missing plug-in give "", null or 0.
 *
 * Texts stay as they are, up to a NUL character or half a surrogate pair. Of a number the fraction
 * is dropped: 3.9 becomes "3" and -3.9 "-3". Of more than 15 digits the last 15 remain; a negative
 * number of more than 13, one of 2 ** 63 and above, NaN and infinities become "". All other values
 * are refused.
 */
interface TovikBridge {
  /** The property's value, or "" when it has none. */
  GetProperty(name: string | number): string;

  /** Sets a property. */
  SetProperty(name: string | number, value: string | number): null;

  /** The plug-in's answer to two texts whose meaning is its own, or "" when it has none. */
  EnumProperty(first: string | number, second: string | number): string;

  /**
   * Runs a command and gives its status, a signed number of 32 bits. By custom it is the number of
   * a PKCS #11 return value: 0 is success, and also what a page sees without a plug-in; 6 is what
   * it sees when the call could not be made.
   */
  Invoke(name: string | number): number;
}

/**
 * Not there at all in an ordinary browser, where the bare name is a ReferenceError. A page tests
 *
 *     if (typeof Tovik !== 'undefined') { ... }
 *
 * or `if (window.Tovik)`. The functions need no `this`: `const invoke = Tovik.Invoke`.
 */
declare const Tovik: TovikBridge | undefined;

interface Window {
  readonly Tovik?: TovikBridge;
}
