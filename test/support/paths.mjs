import { fileURLToPath } from 'node:url';

export const root = fileURLToPath(new URL('../../', import.meta.url));
export const buildFolder = `${root}build/${process.env.ZELKLOGSERVICE_BUILD || 'release'}/`;
