'use strict';

// Finds and loads the native libraries of this package. Every program that uses the package reads this file,
// so the errors for libraries that cannot be loaded are in load_errors.js. Even old versions of Node.js must
// be able to parse both, or they could not report that they are too old.

var OLDEST_NODE = 18;
var fs;
var path;
var ROOT;

// In a bundle that is an ES module there may be neither a `require` for these nor a __dirname.
try {
  fs = require('fs');
  path = require('path');
  ROOT = path.join(__dirname, '..');
} catch (error) {
  throw require('./load_errors.js').bundled(error);
}

// Throws if this package cannot work here at all.
function check() {
  if (process.platform !== 'linux') {
    throw require('./load_errors.js').otherPlatform();
  }
  if (parseInt(process.versions.node, 10) < OLDEST_NODE) {
    throw require('./load_errors.js').oldNode(OLDEST_NODE);
  }
}

// A checkout uses the libraries of its last build, even if a package was made in it. Tests choose another
// build, such as asan, with ZELKLOGSERVICE_BUILD. An installed package has libraries for several processors.
function libraryFile(name) {
  var packed = path.join(ROOT, 'lib', process.platform + '-' + process.arch, name);
  if (!fs.existsSync(path.join(ROOT, 'CMakeLists.txt'))) {
    if (!fs.existsSync(packed)) {
      throw require('./load_errors.js').notInPackage();
    }
    return packed;
  }
  var chosen = process.env.ZELKLOGSERVICE_BUILD;
  if (chosen && !/^[\w-]+$/.test(chosen)) {
    throw require('./load_errors.js').wrongBuildName(chosen);
  }
  var built = path.join(ROOT, 'build', chosen || 'release', name);
  if (fs.existsSync(built)) {
    return built;
  }
  if (chosen || !fs.existsSync(packed)) {
    throw require('./load_errors.js').notBuilt(built, chosen || 'release');
  }
  return packed;
}

// Whether this code runs as part of another file. Webpack can tell it where it was in the project.
function isBundled() {
  return !path.isAbsolute(__dirname) || !fs.existsSync(path.join(__dirname, 'load_library.js'));
}

// Loads FILE; once more where Node.js says this, which it may when one thread that uses the file ends while
// another one loads it.
function requireAddon(file) {
  try {
    return require(file);
  } catch (error) {
    if (!/did not self-register/.test(error && error.message)) {
      throw error;
    }
    return require(file);
  }
}

// The exports of the native library NAME. On failure the error's code says what is missing. A bundle may have
// the libraries beside it: what the system's loader says of them holds for it, too.
function load(name) {
  check();
  var file;
  try {
    file = libraryFile(name);
    return requireAddon(file);
  } catch (error) {
    if (!/^ERR_DLOPEN_/.test(error && error.code) && isBundled()) {
      throw require('./load_errors.js').bundled(file && error);
    }
    throw file ? require('./load_errors.js').notLoaded(file, error) : error;
  }
}

module.exports = { check: check, load: load };
