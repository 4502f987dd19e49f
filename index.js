'use strict';

module.exports = require('./library.js').load('zelklogservice.node');
