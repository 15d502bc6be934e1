import { defineConfig } from 'vitest/config';

export default defineConfig({
  // A delivered page lies on the disk, where "/assets/x.js" is the root of the file system.
  base: './',
  // The engine is WebKitGTK 2.40 or later.
  build: { target: 'safari16.4' },
  test: { environment: 'jsdom', silent: 'passed-only' },
});
