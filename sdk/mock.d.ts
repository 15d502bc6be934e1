// mock.d.ts: typings of the module "tovik-sdk/mock".
/// <reference path="./tovik.d.ts" />
/// <reference path="./tovik-mock.d.ts" />

/** The mock, or undefined where the real bridge exists. */
export const mock: TovikMockControl | undefined;
