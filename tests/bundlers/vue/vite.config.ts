import vue from '@vitejs/plugin-vue';
import { defineConfig } from 'vite';

export default defineConfig({ base: './', build: { target: 'safari16.4' }, plugins: [vue()] });
