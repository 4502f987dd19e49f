// A bus whose messages are malformed: it stands before another one, and sends a corrupted copy before some
// of its messages. Their sockets are `malformed` and `bus` in a folder.
//   node test/soak/malformed_bus.mjs FOLDER SEED
import { connect, createServer } from 'node:net';
import { pipeline } from 'node:stream';

const [folder, seed] = process.argv.slice(2);
const PATIENCE = 50; // Milliseconds. A client that is silent for longer waits for the rest of a message.
const CORRUPTED = 3; // One in so many.
const EXTREMES = [0, 1, 2 ** 31 - 1, 2 ** 32 - 1, 2 ** 26, 2 ** 27 + 1];

// Gives whole numbers below `count`, the same for the same seed.
const randomFrom = (state) => (count) => {
  state = (Math.imul(state, 1664525) + 1013904223) >>> 0;
  return Math.floor(state / 2 ** 32 * count);
};

// Each changes the message at a random place, or gives another one.
const CORRUPTIONS = [
  (data, at, random) => data.writeUInt8(random(256), at),
  (data, at, random) => // Where a length may be.
    data.writeUInt32LE(EXTREMES[random(EXTREMES.length)], Math.min(at, data.length - 4) & ~3),
  (data, at) => data.subarray(0, at),
  (data, at) => Buffer.concat([data.subarray(0, at), data]),
  (data) => data.write('B'), // The other byte order.
  (data) => data.write('9', data.indexOf(':1.') + 3), // Another sender.
  (data, at, random) => data.write('ybnqiuxtdsogvh'[random(14)], data.indexOf('\u0001g\0') + 5), // A type.
];

function corrupt(good, random) {
  const data = Buffer.from(good);
  const changed = CORRUPTIONS[random(CORRUPTIONS.length)](data, random(data.length), random);
  return Buffer.isBuffer(changed) ? changed : data;
}

let connections = Number(seed);
createServer((client) => {
  const random = randomFrom(++connections);
  const bus = connect(`${folder}/bus`);
  bus.on('data', (good) => {
    if (random(CORRUPTED) === 0) {
      client.write(corrupt(good, random));
    }
    client.write(good);
  });
  pipeline(client, bus, () => client.destroy());
  client.setTimeout(PATIENCE, () => client.destroy());
}).listen(`${folder}/malformed`, () => console.log('ready'));
