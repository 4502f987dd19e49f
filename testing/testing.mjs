import testing from './testing.js';

export default testing;

export const { logService, ServiceError, captureLog, setCaller, request } = testing;
