// Checks BUILD.gn and bundle.json, which no desktop build reads: the sources are exactly the module's and none
// of the desktop's, both files name the same component and dependencies, and BUILD.gn is formatted.
import { spawnSync } from 'node:child_process';
import { readdirSync, readFileSync } from 'node:fs';
import { join, relative } from 'node:path';
import { fileURLToPath } from 'node:url';

const root = fileURLToPath(new URL('..', import.meta.url));
const problems = [];

function read(file) {
  return readFileSync(join(root, file), 'utf8');
}

function sourcesIn(folder) {
  return readdirSync(folder, { withFileTypes: true }).flatMap((entry) => {
    const path = join(folder, entry.name);
    return entry.isDirectory() ? sourcesIn(path) : entry.name.endsWith('.cpp') ? [relative(root, path)] : [];
  });
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

function checkBuild() {
  const folders = ['client', 'common', 'config', 'napi', 'payload'];
  const sources = folders.flatMap((folder) => sourcesIn(join(root, folder)));
  compare('BUILD.gn: sources', gnStrings('sources'), sources);
  if (/["/]host\//.test(gn)) {
    problems.push('BUILD.gn: names a file of host/');
  }
  const { error, status } = spawnSync('gn', ['format', '--dry-run', join(root, 'BUILD.gn')]);
  if (error) {
    problems.push('BUILD.gn: its format cannot be checked: run `apt-get install generate-ninja`');
  } else if (status !== 0) {
    problems.push('BUILD.gn: not formatted: run `gn format BUILD.gn`');
  }
}

function checkBundle() {
  const { version, segment, component } = JSON.parse(read('bundle.json'));
  const [, target] = /^ohos_shared_library\("(\w+)"\)/m.exec(gn) ?? [];
  const components = gnStrings('external_deps').map((dependency) => dependency.split(':')[0]);
  compare('bundle.json: component.deps.components', component.deps.components, components);
  const built = [`//${segment.destPath}:${target}`];
  compare('bundle.json: component.build.sub_component', component.build.sub_component, built);
  compare('bundle.json: component.name', [component.name], gnStrings('part_name'));
  compare('bundle.json: component.subsystem', [component.subsystem], gnStrings('subsystem_name'));
  compare('bundle.json: version', [version], [JSON.parse(read('package.json')).version]);
}

checkBuild();
checkBundle();
for (const problem of problems) {
  console.error(problem);
}
process.exitCode = problems.length === 0 ? 0 : 1;
