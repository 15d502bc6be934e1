// tovik-mock.d.ts: typings of tovik-mock.js, a global script like tovik.d.ts.

/** What a page puts in the place of its plug-in; texts arrive as the plug-in would get them. */
interface TovikMockHandlers {
  /** Value of a property; undefined leaves it to what SetProperty has stored. */
  getProperty?(name: string): string | null | undefined;
  /** Called after the value has been stored. */
  setProperty?(name: string, value: string): void;
  enumProperty?(first: string, second: string): string | null | undefined;
  /** Status of a command. Without this handler every command is not supported, 0x54. */
  invoke?(name: string): number;
}

interface TovikMockAction {
  readonly name: string;
  readonly status: string | null;
  readonly response: string | null;
}

interface TovikMockControl {
  /** Stored properties. */
  readonly properties: Map<string, string>;
  /** Handlers to set or replace at any time. */
  readonly handlers: TovikMockHandlers;
  /** Actions so far. */
  readonly actions: TovikMockAction[];
  /** Answer of the dialog, or null while it has not ended. */
  readonly answer: string | null;
  /** Takes an action URL as the window would, and shows what comes of it. */
  perform(url: string): void;
}

/** Only there in the place of a real bridge: test `window.TovikMock`. */
declare const TovikMock: TovikMockControl | undefined;

interface Window {
  readonly TovikMock?: TovikMockControl;
}
