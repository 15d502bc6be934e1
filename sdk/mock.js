// mock.js: tovik-mock.js as a module. Import it before what uses the bridge, and only while developing:
//     if (import.meta.env.DEV) { await import('./my-mock-of-the-plug-in'); }
import './tovik-mock.js';

/** The mock, or undefined where the real bridge exists. */
export const mock = globalThis.TovikMock;
