import { svelte } from '@sveltejs/vite-plugin-svelte';
import { defineConfig } from 'vite';

export default defineConfig({ base: './', build: { target: 'safari16.4' }, plugins: [svelte()] });
