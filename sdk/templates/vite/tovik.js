// npm run tovik -- --plugin FILE: the page of the development server in the real window, with the real
// plug-in. The options are those of tovik-try.
import { spawn } from 'node:child_process';
import { createServer } from 'vite';

// Standard output is for the answer alone.
const server = await createServer({ logLevel: 'warn', server: { host: '127.0.0.1' } });
await server.listen();
const [page] = server.resolvedUrls.local;
const trial = spawn('tovik-try', ['--pages', page, '--console', ...process.argv.slice(2)], { stdio: 'inherit' });
trial.on('error', () => console.error('tovik-try is not on the PATH: install the package tovik-dev'));
trial.on('close', async status => {
  await server.close();
  process.exit(status ?? 1);
});
