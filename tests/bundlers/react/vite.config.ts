import react from '@vitejs/plugin-react';
import { defineConfig } from 'vite';

export default defineConfig({ base: './', build: { target: 'safari16.4' }, plugins: [react()] });
