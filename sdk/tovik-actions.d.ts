// tovik-actions.d.ts: typings of tovik-actions.js, a global script like tovik.d.ts. Modules have
// index.d.ts.

/** Builds action URLs. */
interface TovikActionUrls {
  /**
   * Ends the dialog. The answer is the response when that is not empty and the status is "OK" or
   * "CKR_OK", else the status; without a status it is "CKR_CANCEL". A NUL character ends the text.
   */
  exit(status?: string | number, response?: string | number): string;

  /** Resizes to a percentage, 0 to 999, of the first size; 0 restores that. */
  resizePercent(percent: number): string;

  /** Resizes to pixels, 0 to 65535 each; a 0 stands for the first width or height. */
  resizePixels(width: number, height: number): string;

  /**
   * Resizes to the document: to this width, or without one to the width at which no line has to be
   * broken, and to the height that its content then has; at most to the screen's. Heights that `html`
   * and `body` have from styles do not count. Performed once the document has loaded, with its styles
   * and images; as a URL, for the document as it stands.
   */
  fit(width?: number): string;

  /** Loads the start page again, or ends with the redirect that the command line asks for. */
  reload(): string;

  /** Starts the program anew. */
  restart(): string;

  /** Runs the script "install" and waits for it. */
  install(): string;

  /** Runs the script "uninstall", waits for it and ends the dialog. */
  uninstall(): string;
}

/**
 * Performs an action by navigating to its URL. The script goes on meanwhile, and a navigation that
 * follows in the same task replaces this one.
 */
type TovikActionPerformers = {
  [Name in keyof TovikActionUrls]: (...values: Parameters<TovikActionUrls[Name]>) => void;
};

/** Sizes that are no whole numbers within their bounds throw a RangeError. */
declare const TovikActions: Readonly<TovikActionPerformers> & { readonly urls: TovikActionUrls };
