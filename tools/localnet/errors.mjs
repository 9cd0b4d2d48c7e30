/** Invalid input; the message is sent to the caller. */
export class BadInput extends Error {}

/** A failure that JSON-RPC reports as an error object. */
export class RpcError extends Error {
    constructor(code, message, data) {
        super(message);
        this.code = code;
        this.data = data;
    }
}
