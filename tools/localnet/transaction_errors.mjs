/** Converts the runtime's error of a failed transaction to the format of a node's JSON-RPC reply. */

const transactionTexts = {
    AccountInUse: 'Account in use',
    AccountLoadedTwice: 'Account loaded twice',
    AccountNotFound: 'Attempt to debit an account but found no record of a prior credit.',
    ProgramAccountNotFound: 'Attempt to load a program that does not exist',
    InsufficientFundsForFee: 'Insufficient funds for fee',
    InvalidAccountForFee: 'This account may not be used to pay transaction fees',
    AlreadyProcessed: 'This transaction has already been processed',
    BlockhashNotFound: 'Blockhash not found',
    SignatureFailure: 'Transaction did not pass signature verification',
    InvalidProgramForExecution: 'This program may not be used for executing instructions',
    SanitizeFailure: 'Transaction failed to sanitize accounts offsets correctly',
    AddressLookupTableNotFound: "Transaction loads an address table account that doesn't exist",
};

const instructionTexts = {
    InvalidArgument: 'invalid program argument',
    InvalidInstructionData: 'invalid instruction data',
    InvalidAccountData: 'invalid account data for instruction',
    InsufficientFunds: 'insufficient funds for instruction',
    IncorrectProgramId: 'incorrect program id for instruction',
    MissingRequiredSignature: 'missing required signature for instruction',
    ExternalAccountLamportSpend: 'instruction spent from the balance of an account it does not own',
    ReadonlyLamportChange: 'instruction changed the balance of a read-only account',
    NotEnoughAccountKeys: 'insufficient account keys for instruction',
    UnsupportedProgramId: 'Unsupported program id',
    ArithmeticOverflow: 'Program arithmetic overflowed',
};

/** Returns { err, text } for an error name. */
export function namedError(name) {
    return { err: name, text: transactionTexts[name] ?? name };
}

/**
 * Returns { err, text } for a FailedTransactionMetadata. The binding returns simple errors as
 * ordinals only, but its text description contains the names that JSON-RPC uses, so they are parsed
 * from there.
 */
export function describeFailure(failure) {
    const description = /err: (.*?), meta: TransactionMetadata/s.exec(failure.toString())?.[1] ?? 'Unknown';

    const inInstruction = /^InstructionError\((\d+), (\w+)(?:\((\d+)\))?/.exec(description);
    if (inInstruction) {
        const [, index, name, code] = inInstruction;
        const inner = code === undefined ? name : { [name]: Number(code) };
        const text = code === undefined ? instructionTexts[name] ?? name
            : `custom program error: 0x${Number(code).toString(16)}`;
        return {
            err: { InstructionError: [Number(index), inner] },
            text: `Error processing Instruction ${index}: ${text}`,
        };
    }
    const onAccount = /^(\w+) \{ account_index: (\d+) \}/.exec(description);
    if (onAccount) {
        const [, name, index] = onAccount;
        const text = name === 'InsufficientFundsForRent'
            ? `Transaction results in an account (${index}) with insufficient funds for rent` : name;
        return { err: { [name]: { account_index: Number(index) } }, text };
    }
    const duplicate = /^DuplicateInstruction\((\d+)\)/.exec(description);
    if (duplicate) {
        return {
            err: { DuplicateInstruction: Number(duplicate[1]) },
            text: `Transaction contains a duplicate instruction (${duplicate[1]}) that is not allowed`,
        };
    }
    return namedError(description);
}
