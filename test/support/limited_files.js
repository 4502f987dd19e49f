'use strict';

// Loaded into Node.js's test runner, makes it start each file's process with a time limit. Its own
// --test-timeout cannot end a file whose JavaScript thread is blocked, and Node.js 18 has none.
const { join } = require('node:path');

const isRunner = process.env.NODE_TEST_CONTEXT === undefined;
if (isRunner) {
  process.env.ZELK_NODE = process.execPath;
  process.execPath = join(__dirname, 'limited_node');
}
