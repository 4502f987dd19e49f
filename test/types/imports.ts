// Every kind of import of both entries, as an application with the package in its node_modules writes them.
import zelk, { getModemLogStatus, type ConfigItem } from 'zelklogservice';
import * as everything from 'zelklogservice';
import testing, { logService, type Handlers } from 'zelklogservice/testing'; // @ts-expect-error: nothing of that name
import { getModemLogstatus } from 'zelklogservice';

const items: readonly ConfigItem[] = [{ configKey: 'ring', value: { megabytes: 64 } }];
export const answers: (Promise<boolean> | undefined)[] = [
  getModemLogStatus(), zelk.changeModemLogConfig(items), everything.handleModemLogSwitch(true, items),
];
const handlers: Handlers = { GetModemLogStatus: () => true };
logService(handlers).restore();
testing.setCaller(null); // @ts-expect-error: a state is a boolean
zelk.handleModemLogSwitch('on'); // @ts-expect-error: neither a state nor an identity
testing.setCaller('on');
