'use strict';

// Loads the native libraries of this package.

var fs = require('fs');
var path = require('path');
var requirements = require('./requirements.js');

// An installed package carries its libraries in lib/; a checkout has those of its last build. Tests choose
// another build of the checkout, such as asan, with ZELKLOGSERVICE_BUILD.
function libraryFile(name) {
  var packed = path.join(__dirname, 'lib', name);
  if (fs.existsSync(packed)) {
    return packed;
  }
  var chosen = process.env.ZELKLOGSERVICE_BUILD;
  if (chosen && !/^[\w-]+$/.test(chosen)) {
    throw requirements.plainError('ERR_ZELK_BUILD_NAME', 'ZELKLOGSERVICE_BUILD=' + JSON.stringify(chosen) +
      ' is not the name of a folder under build/: use a name such as release, debug or asan');
  }
  var preset = chosen || 'release';
  var built = path.join(__dirname, 'build', preset, name);
  if (!fs.existsSync(built)) {
    var configured = 'cmake --preset ' + preset + ' && cmake --build --preset ' + preset;
    throw requirements.plainError('ERR_ZELK_NO_BUILD', built + ' does not exist: run `' +
      (preset === 'release' ? 'make build' : configured) + '` in ' + __dirname);
  }
  return built;
}

// The Debian 12 packages of the run-time libraries that the built ones need.
var DEBIAN_PACKAGES = {
  'libjsoncpp.so.25': 'libjsoncpp25',
  'libstdc++.so.6': 'libstdc++6',
  'libgcc_s.so.1': 'libgcc-s1',
};

function loadError(file, error) {
  var reason = String(error.message).split('\n')[0];
  var missing = /(\S+\.so[.\d]*): cannot open shared object file/.exec(reason);
  var library = missing && path.basename(missing[1]);
  if (library && DEBIAN_PACKAGES[library]) {
    return requirements.plainError('ERR_ZELK_LIBRARY', 'the run-time library ' + library +
      ' is missing: run `apt-get install ' + DEBIAN_PACKAGES[library] + '`');
  }
  return requirements.plainError('ERR_ZELK_LOAD', 'cannot load ' + file + ' (' + reason +
    '): build or install it anew on this machine');
}

// The exports of lib/NAME. An error's code says what is missing.
function load(name) {
  requirements.check();
  var file = libraryFile(name);
  try {
    return require(file);
  } catch (error) {
    throw loadError(file, error);
  }
}

module.exports = { load: load };
