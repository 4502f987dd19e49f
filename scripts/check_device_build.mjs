// Checks what a desktop build cannot: that the module's sources include nothing that the platform lacks, that
// each conversion of their log lines has a privacy marker, that BUILD.gn and bundle.json name the same
// component and dependencies, and that BUILD.gn is formatted.
import { spawnSync } from 'node:child_process';
import { existsSync, readFileSync } from 'node:fs';
import { dirname, join } from 'node:path';
import { fileURLToPath } from 'node:url';

const root = fileURLToPath(new URL('..', import.meta.url));
const problems = [];

// The headers that the dependencies of BUILD.gn offer, under the names that a device's build uses.
const PLATFORM_HEADERS = [
  'hilog/log.h', 'ipc_skeleton.h', 'iremote_object.h', 'json/reader.h', 'json/value.h', 'napi/native_api.h',
  'nocopyable.h', 'refbase.h', 'singleton.h', 'tokenid_kit.h', 'zelk_service_api/client.h',
  'zelk_service_api/i_zelk_log_service.h',
];
const STANDARD_HEADER = /^[a-z_]+$/;

function read(file) {
  return readFileSync(join(root, file), 'utf8');
}

const gn = read('BUILD.gn');

// The strings of `name = [ … ]` or `name = "…"`.
function gnStrings(name) {
  const [, value = ''] = new RegExp(`^ *${name} = (\\[[^\\]]*\\]|".*")`, 'm').exec(gn) ?? [];
  return [...value.matchAll(/"([^"]*)"/g)].map(([, text]) => text);
}

function compare(what, found, expected) {
  const missing = expected.filter((name) => !found.includes(name));
  const wrong = found.filter((name, index) => !expected.includes(name) || found.indexOf(name) !== index);
  problems.push(...missing.map((name) => `${what}: ${name} is missing`));
  problems.push(...wrong.map((name) => `${what}: ${name} is wrong`));
}

// Returns the module's sources, and its own headers that they include.
function checkIncludes() {
  const files = new Set(gnStrings('sources'));
  for (const file of files) {
    for (const [, , name] of read(file).matchAll(/^#include (["<])([^">]+)[">]/gm)) {
      const own = [name, join(dirname(file), name)].find((path) => existsSync(join(root, path)));
      if (own) {
        files.add(own);
      } else if (!PLATFORM_HEADERS.includes(name) && !STANDARD_HEADER.test(name)) {
        problems.push(`${file}: includes ${name}, which the platform lacks`);
      }
    }
  }
  const strangers = [...files].filter((file) => /^(host|service|testing)\//.test(file));
  problems.push(...strangers.map((file) => `the module includes ${file}`));
  return files;
}

// Where a quotation mark may be: in comments, characters, and texts, of which the content is captured.
const QUOTED = /\/\/.*|\/\*[^]*?\*\/|'(?:[^\\]|\\.)'|"((?:[^"\\\n]|\\.)*)"/g;
const UNMARKED = /%(?!\{(?:public|private)\})/;

// A device hides the argument of a conversion without a marker, while a desktop prints it.
function checkMarkers(files) {
  for (const file of files) {
    for (const [, text = ''] of read(file).matchAll(QUOTED)) {
      if (UNMARKED.test(text.replaceAll('%%', ''))) {
        problems.push(`${file}: "${text}" has a conversion without {public} or {private}`);
      }
    }
  }
}

function checkFormat() {
  const { error, status } = spawnSync('gn', ['format', '--dry-run', join(root, 'BUILD.gn')]);
  if (error) {
    problems.push('BUILD.gn: its format cannot be checked: run `apt-get install generate-ninja`');
  } else if (status !== 0) {
    problems.push('BUILD.gn: not formatted: run `gn format BUILD.gn`');
  }
}

function checkBundle() {
  const { segment, component } = JSON.parse(read('bundle.json'));
  const [, target] = /^ohos_shared_library\("(\w+)"\)/m.exec(gn) ?? [];
  const components = gnStrings('external_deps').map((dependency) => dependency.split(':')[0]);
  compare('bundle.json: component.deps.components', component.deps.components, components);
  const built = [`//${segment.destPath}:${target}`];
  compare('bundle.json: component.build.sub_component', component.build.sub_component, built);
  compare('bundle.json: component.name', [component.name], gnStrings('part_name'));
  compare('bundle.json: component.subsystem', [component.subsystem], gnStrings('subsystem_name'));
}

checkMarkers(checkIncludes());
checkFormat();
checkBundle();
for (const problem of problems) {
  console.error(problem);
}
process.exitCode = problems.length === 0 ? 0 : 1;
