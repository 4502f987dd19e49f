'use strict';

// The requirements of this package, as errors that say in one line what is missing and what to do about it.
// In a bundle, `require` and __dirname may be missing: only the functions that need them look for them.

// An error that prints as its message alone: a stack trace does not help with installing something.
function plainError(code, message, cause) {
  var error = new Error('zelklogservice: ' + message);
  error.code = code;
  error.stack = error.message;
  if (cause !== undefined) {
    Object.defineProperty(error, 'cause', { value: cause, configurable: true, writable: true });
  }
  return error;
}

function otherPlatform() {
  return plainError('ERR_ZELK_PLATFORM', 'runs on Linux only, and this is ' + process.platform +
    ': use a Linux machine, for example Debian 12');
}

function oldNode(oldest) {
  return plainError('ERR_ZELK_NODE_VERSION', 'needs Node.js ' + oldest + ' or newer, and this is ' +
    process.versions.node + ': install a newer Node.js');
}

function wrongBuildName(name) {
  return plainError('ERR_ZELK_BUILD_NAME', 'ZELKLOGSERVICE_BUILD=' + JSON.stringify(name) +
    ' is not the name of a folder under build/: use a name such as release, debug or asan');
}

function bundled(cause) {
  return plainError('ERR_ZELK_BUNDLED', 'is bundled, and its native libraries are not: have the bundler ' +
    'leave it outside (esbuild: --external:zelklogservice; webpack: `externals`; Rollup: `external`), and ' +
    'install it where the bundle runs', cause);
}

function root() {
  return require('path').join(__dirname, '..');
}

// In a checkout.
function notBuilt(file, preset) {
  var configured = 'cmake --preset ' + preset + ' && cmake --build --preset ' + preset;
  return plainError('ERR_ZELK_NO_BUILD', file + ' does not exist: run `' +
    (preset === 'release' ? 'make build' : configured) + '` in ' + root());
}

// In an installed package.
function notInPackage() {
  var fs = require('fs');
  var folder = require('path').join(root(), 'lib');
  if (!fs.existsSync(folder)) {
    return plainError('ERR_ZELK_NO_BUILD', 'this copy was installed from its sources and never built: ' +
      'install the package that `make pack` makes in a checkout');
  }
  if (!fs.statSync(folder).isDirectory()) {
    return plainError('ERR_ZELK_NO_BUILD', folder + ' is a file, not a folder: install this package anew');
  }
  var builds = fs.readdirSync(folder).sort().join(' and ');
  return plainError('ERR_ZELK_PROCESSOR', 'holds no build for ' + process.platform + '-' + process.arch +
    ', only for ' + builds + ': run `make build` in a checkout, and use that');
}

function usesGlibc() {
  return !process.report || 'glibcVersionRuntime' in process.report.getReport().header;
}

// Debian's name for the package of a run-time library, such as libgcc-s1 for libgcc_s.so.1.
function debianPackage(library) {
  var parts = library.split('.so.');
  return parts[0].replace('_', '-') + parts[1];
}

// The error for a library that the system's loader refused, by its reason.
function notLinked(file, reason, error) {
  var missing = /(lib[\w+-]+\.so\.\d+): cannot open shared object file/.exec(reason);
  var old = /version [`']((?:GLIBC|GLIBCXX|CXXABI)_[\d.]+)' not found/.exec(reason);
  if (!usesGlibc()) {
    return plainError('ERR_ZELK_LIBC', 'is built for the GNU C library, and this Node.js uses another one: ' +
      'use Node.js on Debian or the like', error);
  }
  if (missing) {
    return plainError('ERR_ZELK_LIBRARY', 'the run-time library ' + missing[1] + ' is missing: install it ' +
      '(on Debian: `apt-get install ' + debianPackage(missing[1]) + '`)', error);
  }
  if (old) {
    return plainError('ERR_ZELK_LIBC', 'needs newer C and C++ run-time libraries, with ' + old[1] + ': use ' +
      'a newer system, such as Debian 12, or run `make build` in a checkout', error);
  }
  return plainError('ERR_ZELK_LOAD', 'cannot load ' + file + ' (' + reason +
    '): build or install it anew on this machine', error);
}

function addonsSwitchedOff(error) {
  return plainError('ERR_ZELK_ADDONS_OFF', 'is a native addon, and ' + (process.permission
    ? 'the permission model of Node.js switches these off: start Node.js with --allow-addons'
    : '--no-addons switches these off: start Node.js without this option'), error);
}

function notLoaded(file, error) {
  var reason = String(error && error.message).split('\n')[0];
  if (error && error.code === 'ERR_DLOPEN_DISABLED') {
    return addonsSwitchedOff(error);
  }
  if (error && error.code === 'ERR_DLOPEN_FAILED') {
    return notLinked(file, reason, error);
  }
  return plainError('ERR_ZELK_INIT', require('path').basename(file) +
    ' was loaded, but could not set itself up (' + reason + ')', error);
}

module.exports = {
  otherPlatform: otherPlatform,
  oldNode: oldNode,
  bundled: bundled,
  wrongBuildName: wrongBuildName,
  notBuilt: notBuilt,
  notInPackage: notInPackage,
  notLoaded: notLoaded,
};
